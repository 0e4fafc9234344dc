#include "measurement/LocationWalk.h"

#include <algorithm>
#include <string_view>

#include "measurement/BoundedList.h"
#include "removal/AIStorageCleanup.h"
#include "text/TextRules.h"

namespace tallowmere {

namespace {

constexpr std::size_t largestFilesCapacity = 12;
constexpr std::size_t oldLogsCapacity = 50;
constexpr std::size_t cleanupFilesCapacity = 500;

const auto bytesOf = [](const FileEntry& entry) { return entry.bytes; };
const auto allocatedOf = [](const StorageCleanupFile& file) { return file.allocatedBytes; };

std::string joined(const std::string& folder, std::string_view name) {
    std::string path = folder;
    if (!path.ends_with('/')) {
        path += '/';
    }
    path += name;
    return path;
}

class LocationWalk {
public:
    LocationWalk(const StorageLocation& location, const std::filesystem::path& folder,
                 const EntryStatus& rootStatus, std::int64_t maxEntries, ScanContext& context,
                 FolderJobs& jobs)
        : m_jobs(jobs),
          m_rootStatus(rootStatus),
          m_maxEntries(maxEntries),
          m_context(context),
          m_checksFiles(location.category == "Cache" || location.category == "Logs"),
          m_path(folder.native()) {
        m_finding.location = location;
        m_finding.url = folder;
    }

    StorageFinding run(std::shared_ptr<FolderJob> root) {
        const bool rootProtected =
            m_checksFiles && AIStorageCleanup::hasProtectedFolder(m_finding.url);
        pushFolder(root, rootProtected);
        while (!m_stack.empty()) {
            if (!step()) {
                m_finding.limited = true;
                break;
            }
        }
        root->abandonLocation();  // what was listed ahead beyond the limit is not needed
        return std::move(m_finding);
    }

private:
    struct Folder {
        std::shared_ptr<FolderJob> job;
        ListedChunk listed;
        std::size_t next = 0;
        std::size_t pathLength = 0;
        bool protectedFolder = false;
    };

    // Takes up the next entry of the innermost open folder; false when the limit is passed.
    bool step() {
        Folder& folder = m_stack.back();
        m_path.resize(folder.pathLength);
        if (folder.next == folder.listed.chunk.entries.size()) {
            auto listed = m_jobs.next(*folder.job);
            if (!listed) {
                // A folder that could not be opened, or whose reading failed, is one walk error.
                const bool failed = folder.job->openFailed() || folder.job->readFailed();
                m_finding.skippedCount += failed ? 1 : 0;
                m_stack.pop_back();
                return true;
            }
            folder.listed = std::move(*listed);
            folder.next = 0;
        }
        const std::size_t index = folder.next++;
        return visit(folder, index);
    }

    bool visit(Folder& folder, std::size_t index) {
        if (m_context.options.stopToken.stop_requested()) {
            throw ScanCancelled();
        }
        const DirectoryEntry& entry = folder.listed.chunk.entries[index];
        const std::string_view name = folder.listed.chunk.name(entry);
        const auto& nestedNames = folder.job->nestedNames();
        if (std::ranges::find(nestedNames, name) != nestedNames.end()) {
            return true;
        }
        if (++m_entries > m_maxEntries) {
            return false;
        }
        if (entry.statusFailed) {
            ++m_finding.skippedCount;
            return true;
        }
        switch (entry.status.kind) {
            case EntryKind::directory:
                descend(folder, name, folder.listed.children[index]);
                break;
            case EntryKind::regularFile:
                countOnce(folder, name, entry.status);
                break;
            default:
                break;
        }
        return true;
    }

    void descend(const Folder& parent, std::string_view name, std::shared_ptr<FolderJob> child) {
        const bool protectedFolder =
            parent.protectedFolder ||
            (m_checksFiles && AIStorageCleanup::isProtectedFolderName(name));
        m_path = joined(m_path, name);
        pushFolder(std::move(child), protectedFolder);  // invalidates `parent` and `name`
    }

    void pushFolder(std::shared_ptr<FolderJob> job, bool protectedFolder) {
        Folder folder;
        folder.job = std::move(job);
        folder.pathLength = m_path.size();
        folder.protectedFolder = protectedFolder;
        m_stack.push_back(std::move(folder));
    }

    void countOnce(const Folder& folder, std::string_view name, const EntryStatus& status) {
        const bool mayRecur = status.linkCount > 1 || status.mountId != m_rootStatus.mountId ||
                              status.identity.device != m_rootStatus.identity.device;
        if (mayRecur && !m_context.countedIdentities.insert(status.identity).second) {
            return;
        }
        count(folder, name, status);
    }

    void count(const Folder& folder, std::string_view name, const EntryStatus& status) {
        m_finding.logicalBytes += status.logicalBytes;
        m_finding.allocatedBytes += status.allocatedBytes;
        ++m_finding.fileCount;
        const Date modified = status.hasModified ? dateFromFileTime(status.modifiedSeconds,
                                                                    status.modifiedNanoseconds)
                                                 : distantFuture;
        const bool largest = BoundedList::admits(m_finding.largestFiles, status.logicalBytes,
                                                 largestFilesCapacity, bytesOf);
        bool cleanup = false;
        bool recentCleanup = false;
        bool oldLog = false;
        if (m_checksFiles) {
            TextRules::asciiLowercase(name, m_lowerName);
            const auto& category = m_finding.location.category;
            const Date now = m_context.now;
            if (status.logicalBytes >= 1) {
                cleanup = AIStorageCleanup::eligibleInFolder(m_lowerName, folder.protectedFolder,
                                                             modified, category, now, false) &&
                          BoundedList::admits(m_finding.cleanupFiles, status.allocatedBytes,
                                              cleanupFilesCapacity, allocatedOf);
                recentCleanup =
                    AIStorageCleanup::eligibleInFolder(m_lowerName, folder.protectedFolder,
                                                       modified, category, now, true) &&
                    BoundedList::admits(m_finding.recentCleanupFiles, status.allocatedBytes,
                                        cleanupFilesCapacity, allocatedOf);
            }
            oldLog = AIStorageCleanup::isOldLogFile(m_lowerName, modified, category, now, false) &&
                     BoundedList::admits(m_finding.oldLogs, status.logicalBytes, oldLogsCapacity,
                                         bytesOf);
        }
        if (!largest && !cleanup && !recentCleanup && !oldLog) {
            return;
        }
        FileEntry entry{joined(m_path, name), status.logicalBytes, modified,
                        status.identity.text()};
        // Each list takes a copy but the last, which takes the entry itself.
        int usesLeft = int{largest} + int{cleanup} + int{recentCleanup} + int{oldLog};
        const auto take = [&]() -> FileEntry { return --usesLeft == 0 ? std::move(entry) : entry; };
        if (cleanup) {
            BoundedList::insert(m_finding.cleanupFiles, cleanupFile(take(), status, false),
                                cleanupFilesCapacity, allocatedOf);
        }
        if (recentCleanup) {
            BoundedList::insert(m_finding.recentCleanupFiles, cleanupFile(take(), status, true),
                                cleanupFilesCapacity, allocatedOf);
        }
        if (largest) {
            BoundedList::insert(m_finding.largestFiles, take(), largestFilesCapacity, bytesOf);
        }
        if (oldLog) {
            BoundedList::insert(m_finding.oldLogs, take(), oldLogsCapacity, bytesOf);
        }
    }

    StorageCleanupFile cleanupFile(FileEntry entry, const EntryStatus& status,
                                   bool includesRecent) const {
        return {std::move(entry), m_finding.url, m_finding.location.category, status.allocatedBytes,
                includesRecent};
    }

    FolderJobs& m_jobs;
    const EntryStatus m_rootStatus;
    const std::int64_t m_maxEntries;
    ScanContext& m_context;
    const bool m_checksFiles;
    StorageFinding m_finding;
    std::int64_t m_entries = 0;
    std::string m_path;       // the innermost open folder's path while its entries are visited
    std::string m_lowerName;  // reused so lower-casing a name allocates nothing per file
    std::vector<Folder> m_stack;
};

}  // namespace

StorageFinding measureLocation(const StorageLocation& location, const std::filesystem::path& folder,
                               const EntryStatus& rootStatus, std::shared_ptr<FolderJob> root,
                               std::int64_t maxEntries, ScanContext& context, FolderJobs& jobs) {
    LocationWalk walk(location, folder, rootStatus, maxEntries, context, jobs);
    return walk.run(std::move(root));
}

}  // namespace tallowmere
