#include "measurement/LocationWalk.h"

#include <algorithm>
#include <chrono>
#include <string_view>
#include <thread>

#include "measurement/BoundedList.h"
#include "platform/DirectoryStream.h"
#include "removal/AIStorageCleanup.h"
#include "text/TextRules.h"

namespace tallowmere {

namespace {

constexpr std::size_t largestFilesCapacity = 12;
constexpr std::size_t oldLogsCapacity = 50;
constexpr std::size_t cleanupFilesCapacity = 500;
constexpr std::size_t chunkSize = 1024;
constexpr std::int64_t entriesBetweenPauses = 256;
constexpr auto pauseLength = std::chrono::milliseconds(2);

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

// The folder part of a path ("/" for a path directly below the root).
std::string_view parentOf(std::string_view path) {
    const auto slash = path.rfind('/');
    return slash == 0 ? std::string_view("/") : path.substr(0, slash);
}

class LocationWalk {
public:
    LocationWalk(const StorageLocation& location, const std::filesystem::path& folder,
                 const EntryStatus& rootStatus, const std::vector<std::string>& nestedFolders,
                 std::int64_t maxEntries, ScanContext& context)
        : m_nestedFolders(nestedFolders),
          m_rootStatus(rootStatus),
          m_maxEntries(maxEntries),
          m_context(context),
          m_checksFiles(location.category == "Cache" || location.category == "Logs"),
          m_path(folder.native()) {
        m_finding.location = location;
        m_finding.url = folder;
    }

    StorageFinding run(DirectoryStream root) {
        const bool rootProtected =
            m_checksFiles && AIStorageCleanup::hasProtectedFolder(m_finding.url);
        pushFolder(std::move(root), rootProtected);
        while (!m_stack.empty()) {
            if (!step()) {
                m_finding.limited = true;
                break;
            }
        }
        return std::move(m_finding);
    }

private:
    struct Folder {
        DirectoryStream stream;
        DirectoryChunk chunk;
        std::size_t next = 0;
        std::size_t pathLength = 0;
        bool protectedFolder = false;
        std::vector<std::string> nestedNames;  // names in this folder that are other locations
    };

    // Takes up the next entry of the innermost open folder; false when the limit is passed.
    bool step() {
        Folder& folder = m_stack.back();
        m_path.resize(folder.pathLength);
        if (folder.next == folder.chunk.entries.size()) {
            const auto budget = static_cast<std::size_t>(
                std::clamp<std::int64_t>(m_maxEntries - m_entries + 1, 1, chunkSize));
            folder.next = 0;
            if (!folder.stream.readChunk(folder.chunk, budget)) {
                m_finding.skippedCount += folder.stream.readFailed() ? 1 : 0;
                m_stack.pop_back();
                return true;
            }
        }
        return visit(folder, folder.chunk.entries[folder.next++]);
    }

    bool visit(Folder& folder, const DirectoryEntry& entry) {
        if (m_context.options.stopToken.stop_requested()) {
            throw ScanCancelled();
        }
        const std::string_view name = folder.chunk.name(entry);
        if (std::ranges::find(folder.nestedNames, name) != folder.nestedNames.end()) {
            return true;
        }
        if (++m_entries > m_maxEntries) {
            return false;
        }
        if (m_context.options.pauses && m_entries % entriesBetweenPauses == 0) {
            std::this_thread::sleep_for(pauseLength);
        }
        if (entry.statusFailed) {
            ++m_finding.skippedCount;
            return true;
        }
        switch (entry.status.kind) {
            case EntryKind::directory:
                descend(folder, entry);
                break;
            case EntryKind::regularFile:
                countOnce(folder, name, entry.status);
                break;
            default:
                break;
        }
        return true;
    }

    void descend(Folder& parent, const DirectoryEntry& entry) {
        DirectoryStream child =
            DirectoryStream::openChild(parent.stream.fd(), parent.chunk.cName(entry));
        if (!child.valid()) {
            ++m_finding.skippedCount;
            return;
        }
        const std::string_view name = parent.chunk.name(entry);
        const bool protectedFolder =
            parent.protectedFolder ||
            (m_checksFiles && AIStorageCleanup::isProtectedFolderName(name));
        m_path = joined(m_path, name);
        pushFolder(std::move(child), protectedFolder);  // invalidates `parent` and `entry`
    }

    void pushFolder(DirectoryStream stream, bool protectedFolder) {
        Folder folder;
        folder.stream = std::move(stream);
        folder.pathLength = m_path.size();
        folder.protectedFolder = protectedFolder;
        for (const auto& nested : m_nestedFolders) {
            if (parentOf(nested) == m_path) {
                folder.nestedNames.push_back(nested.substr(nested.rfind('/') + 1));
            }
        }
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
        const FileEntry entry{joined(m_path, name), status.logicalBytes, modified,
                              status.identity.text()};
        if (largest) {
            BoundedList::insert(m_finding.largestFiles, entry, largestFilesCapacity, bytesOf);
        }
        if (cleanup) {
            BoundedList::insert(m_finding.cleanupFiles, cleanupFile(entry, status, false),
                                cleanupFilesCapacity, allocatedOf);
        }
        if (recentCleanup) {
            BoundedList::insert(m_finding.recentCleanupFiles, cleanupFile(entry, status, true),
                                cleanupFilesCapacity, allocatedOf);
        }
        if (oldLog) {
            BoundedList::insert(m_finding.oldLogs, entry, oldLogsCapacity, bytesOf);
        }
    }

    StorageCleanupFile cleanupFile(const FileEntry& entry, const EntryStatus& status,
                                   bool includesRecent) const {
        return {entry, m_finding.url, m_finding.location.category, status.allocatedBytes,
                includesRecent};
    }

    const std::vector<std::string>& m_nestedFolders;
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
                               LocationFolder opened, const std::vector<std::string>& nestedFolders,
                               std::int64_t maxEntries, ScanContext& context) {
    LocationWalk walk(location, folder, opened.status, nestedFolders, maxEntries, context);
    return walk.run(std::move(opened.stream));
}

}  // namespace tallowmere
