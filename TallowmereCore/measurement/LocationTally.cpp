#include "measurement/LocationTally.h"

#include <algorithm>
#include <optional>

#include "platform/FileSystemError.h"
#include "removal/AIStorageCleanup.h"
#include "text/TextRules.h"

namespace tallowmere {

namespace {

constexpr std::size_t largestFilesCapacity = 12;
constexpr std::size_t oldLogsCapacity = 50;
constexpr std::size_t cleanupFilesCapacity = 500;
constexpr std::size_t unreadableEntriesCapacity = 5;

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
    // Only cache and log locations check their files.
    const CleanupCategory category = *cleanupCategoryNamed(scope.location.category);
    std::vector<StorageCleanupFile> files;
    files.reserve(sorted.size());
    for (auto& ranked : sorted) {
        files.push_back({.entry = std::move(ranked.item),
                         .root = scope.url,
                         .category = category,
                         .allocatedBytes = ranked.size,
                         .includesRecent = includesRecent,
                         .statusChanged = std::nullopt});
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
      m_recentCleanupFiles(cleanupFilesCapacity),
      m_unreadable(unreadableEntriesCapacity) {}

struct LocationTally::Lists {
    bool largest = false;
    bool cleanup = false;
    bool recentCleanup = false;
    bool oldLog = false;

    int count() const { return int{largest} + int{cleanup} + int{recentCleanup} + int{oldLog}; }
};

void LocationTally::countFile(const WalkFolder& folder, std::uint64_t position,
                              std::string_view name, const EntryStatus& status) {
    m_logicalBytes += status.logicalBytes;
    m_allocatedBytes += status.allocatedBytes;
    ++m_fileCount;
    const Date modified = modifiedDate(status);
    const Lists lists = listsFor(folder, position, name, status, modified);
    if (lists.count() == 0) {
        return;
    }
    FileEntry entry{folder.filePathOf(name), status.logicalBytes, modified, status.identity};
    // Each list takes a copy but the last, which takes the entry itself.
    int usesLeft = lists.count();
    const auto take = [&](std::int64_t size) -> Ranked<FileEntry> {
        return --usesLeft == 0 ? Ranked<FileEntry>{size, position, std::move(entry)}
                               : Ranked<FileEntry>{size, position, entry};
    };
    if (lists.cleanup) {
        m_cleanupFiles.add(take(status.allocatedBytes));
    }
    if (lists.recentCleanup) {
        m_recentCleanupFiles.add(take(status.allocatedBytes));
    }
    if (lists.largest) {
        m_largestFiles.add(take(status.logicalBytes));
    }
    if (lists.oldLog) {
        m_oldLogs.add(take(status.logicalBytes));
    }
}

LocationTally::Lists LocationTally::listsFor(const WalkFolder& folder, std::uint64_t position,
                                             std::string_view name, const EntryStatus& status,
                                             Date modified) {
    Lists lists;
    lists.largest = m_largestFiles.admits(status.logicalBytes, position);
    if (!m_checksFiles) {
        return lists;
    }
    // Every file of a cache or log location is weighed, since a review's reach is told in
    // full; recent files are the wider set.
    TextRules::asciiLowercase(name, m_lowerName);
    const auto verdict = AIStorageCleanup::verdictInFolder(
        m_lowerName, folder.protectedFolder, modified, m_scope->location.category, m_scope->now);
    // Empty files free nothing.
    const bool recent = verdict.eligibleRecent && status.logicalBytes >= 1;
    const bool old = recent && verdict.eligible;
    if (recent) {
        ++m_recentCleanupFileCount;
        m_recentCleanupBytes += status.allocatedBytes;
        lists.recentCleanup = m_recentCleanupFiles.admits(status.allocatedBytes, position);
    }
    if (old) {
        ++m_cleanupFileCount;
        m_cleanupBytes += status.allocatedBytes;
        lists.cleanup = m_cleanupFiles.admits(status.allocatedBytes, position);
    }
    lists.oldLog = verdict.oldLog && m_oldLogs.admits(status.logicalBytes, position);
    return lists;
}

void LocationTally::countSkipped(const WalkFolder& folder, std::uint64_t position,
                                 std::string_view name, int error) {
    ++m_skippedCount;
    if (m_unreadable.admits(0, position)) {
        m_unreadable.add({0, position, {folder.pathOf(name), describeErrno(error)}});
    }
}

void LocationTally::countSkipped(const WalkFolder& folder, int error) {
    countSkipped(folder, describeErrno(error));
}

void LocationTally::countSkipped(const WalkFolder& folder, std::string reason) {
    ++m_skippedCount;
    if (m_unreadable.admits(0, folder.position)) {
        m_unreadable.add({0, folder.position, {folder.path(), std::move(reason)}});
    }
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
    m_unreadable.add(std::move(other.m_unreadable));
    m_cleanupFileCount += other.m_cleanupFileCount;
    m_cleanupBytes += other.m_cleanupBytes;
    m_recentCleanupFileCount += other.m_recentCleanupFileCount;
    m_recentCleanupBytes += other.m_recentCleanupBytes;
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
    finding.cleanupFileCount = m_cleanupFileCount;
    finding.cleanupBytes = m_cleanupBytes;
    finding.recentCleanupFileCount = m_recentCleanupFileCount;
    finding.recentCleanupBytes = m_recentCleanupBytes;
    for (auto& ranked : std::move(m_unreadable).sorted()) {
        finding.unreadableEntries.push_back(std::move(ranked.item));
    }
    return finding;
}

}  // namespace tallowmere
