#include "measurement/LocationTally.h"

#include <algorithm>

#include "removal/AIStorageCleanup.h"
#include "text/TextRules.h"

namespace tallowmere {

namespace {

constexpr std::size_t largestFilesCapacity = 12;
constexpr std::size_t oldLogsCapacity = 50;
constexpr std::size_t cleanupFilesCapacity = 500;

Date modifiedDate(const EntryStatus& status) {
    return status.hasModified ? dateFromFileTime(status.modifiedSeconds, status.modifiedNanoseconds)
                              : distantFuture;
}

// Lists are made to their exact size: a scan result is kept for a long time.
std::vector<FileEntry> entriesOf(RankedList<FileEntry>&& list) {
    auto sorted = std::move(list).sorted();
    std::vector<FileEntry> entries;
    entries.reserve(sorted.size());
    for (auto& ranked : sorted) {
        entries.push_back(std::move(ranked.item));
    }
    return entries;
}

std::vector<StorageCleanupFile> cleanupFilesOf(RankedList<FileEntry>&& list,
                                               const LocationScope& scope, bool includesRecent) {
    auto sorted = std::move(list).sorted();
    std::vector<StorageCleanupFile> files;
    files.reserve(sorted.size());
    for (auto& ranked : sorted) {
        files.push_back({std::move(ranked.item), scope.url, scope.location.category, ranked.size,
                         includesRecent});
    }
    return files;
}

}  // namespace

LocationTally::LocationTally(const LocationScope& scope)
    : m_scope(&scope),
      m_checksFiles(scope.checksFiles()),
      m_largestFiles(largestFilesCapacity),
      m_oldLogs(oldLogsCapacity),
      m_cleanupFiles(cleanupFilesCapacity),
      m_recentCleanupFiles(cleanupFilesCapacity) {}

void LocationTally::countFile(const WalkFolder& folder, std::uint32_t index, std::string_view name,
                              const EntryStatus& status) {
    m_logicalBytes += status.logicalBytes;
    m_allocatedBytes += status.allocatedBytes;
    ++m_fileCount;
    std::string order;  // made only when a list needs it
    const auto orderOf = [&]() -> const std::string& {
        if (order.empty()) {
            order = folder.orderOf(index);
        }
        return order;
    };
    const Date modified = modifiedDate(status);
    const bool largest = m_largestFiles.admits(status.logicalBytes, orderOf);
    bool cleanup = false;
    bool recentCleanup = false;
    bool oldLog = false;
    if (m_checksFiles) {
        // Whether a list has room is cheaper to learn than whether the file may go in it, and
        // once the lists are full most files find no room.
        const bool positive = status.logicalBytes >= 1;
        const bool cleanupRoom = positive && m_cleanupFiles.admits(status.allocatedBytes, orderOf);
        const bool recentRoom =
            positive && m_recentCleanupFiles.admits(status.allocatedBytes, orderOf);
        const bool oldLogRoom = m_oldLogs.admits(status.logicalBytes, orderOf);
        if (cleanupRoom || recentRoom || oldLogRoom) {
            TextRules::asciiLowercase(name, m_lowerName);
            const auto& category = m_scope->location.category;
            const Date now = m_scope->now;
            const bool inProtected = folder.protectedFolder;
            cleanup = cleanupRoom && AIStorageCleanup::eligibleInFolder(
                                         m_lowerName, inProtected, modified, category, now, false);
            recentCleanup =
                recentRoom && AIStorageCleanup::eligibleInFolder(m_lowerName, inProtected, modified,
                                                                 category, now, true);
            oldLog = oldLogRoom &&
                     AIStorageCleanup::isOldLogFile(m_lowerName, modified, category, now, false);
        }
    }
    if (!largest && !cleanup && !recentCleanup && !oldLog) {
        return;
    }
    FileEntry entry{folder.pathOf(name), status.logicalBytes, modified, status.identity.text()};
    orderOf();
    // Each list takes a copy but the last, which takes the entry itself.
    int usesLeft = int{largest} + int{cleanup} + int{recentCleanup} + int{oldLog};
    const auto take = [&](std::int64_t size) -> Ranked<FileEntry> {
        return --usesLeft == 0 ? Ranked<FileEntry>{size, std::move(order), std::move(entry)}
                               : Ranked<FileEntry>{size, order, entry};
    };
    if (cleanup) {
        m_cleanupFiles.add(take(status.allocatedBytes));
    }
    if (recentCleanup) {
        m_recentCleanupFiles.add(take(status.allocatedBytes));
    }
    if (largest) {
        m_largestFiles.add(take(status.logicalBytes));
    }
    if (oldLog) {
        m_oldLogs.add(take(status.logicalBytes));
    }
}

void LocationTally::deferLinkedFile(const std::shared_ptr<const WalkFolder>& folder,
                                    std::uint32_t index, std::string_view name,
                                    const EntryStatus& status) {
    m_linkedFiles.push_back({folder, index, std::string(name), folder->orderOf(index), status});
}

void LocationTally::add(LocationTally&& other) {
    m_allocatedBytes += other.m_allocatedBytes;
    m_logicalBytes += other.m_logicalBytes;
    m_fileCount += other.m_fileCount;
    m_skippedCount += other.m_skippedCount;
    m_largestFiles.add(std::move(other.m_largestFiles));
    m_oldLogs.add(std::move(other.m_oldLogs));
    m_cleanupFiles.add(std::move(other.m_cleanupFiles));
    m_recentCleanupFiles.add(std::move(other.m_recentCleanupFiles));
    std::ranges::move(other.m_linkedFiles, std::back_inserter(m_linkedFiles));
    other.m_linkedFiles.clear();
}

void LocationTally::countLinkedFiles(CountedIdentities& counted) {
    std::ranges::sort(m_linkedFiles, {}, &LinkedFile::order);
    for (const LinkedFile& file : m_linkedFiles) {
        if (counted.insert(file.status.identity).second) {
            countFile(*file.folder, file.index, file.name, file.status);
        }
    }
    m_linkedFiles.clear();
}

StorageFinding LocationTally::finding(bool limited) && {
    StorageFinding finding;
    finding.location = m_scope->location;
    finding.url = m_scope->url;
    finding.allocatedBytes = m_allocatedBytes;
    finding.logicalBytes = m_logicalBytes;
    finding.fileCount = m_fileCount;
    finding.skippedCount = m_skippedCount;
    finding.largestFiles = entriesOf(std::move(m_largestFiles));
    finding.oldLogs = entriesOf(std::move(m_oldLogs));
    finding.cleanupFiles = cleanupFilesOf(std::move(m_cleanupFiles), *m_scope, false);
    finding.recentCleanupFiles = cleanupFilesOf(std::move(m_recentCleanupFiles), *m_scope, true);
    finding.limited = limited;
    return finding;
}

}  // namespace tallowmere
