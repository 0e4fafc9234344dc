#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "measurement/FileEntry.h"
#include "measurement/StorageLocation.h"
#include "measurement/UnreadableFolder.h"
#include "removal/StorageCleanupFile.h"

namespace tallowmere {

// The measurement of one location. The lists are bounded (12, 50, 500, 500) and kept
// largest first; equal sizes keep the order in which the walk met them.
struct StorageFinding {
    StorageLocation location;
    std::filesystem::path url;
    std::int64_t allocatedBytes = 0;
    std::int64_t logicalBytes = 0;
    std::int64_t fileCount = 0;
    std::int64_t skippedCount = 0;
    std::vector<FileEntry> largestFiles;
    std::vector<FileEntry> oldLogs;
    std::vector<StorageCleanupFile> cleanupFiles;
    std::vector<StorageCleanupFile> recentCleanupFiles;
    bool limited = false;
    // Every file a review of the location could take one by one, not only those listed: without
    // recent files, and with them.
    std::int64_t cleanupFileCount = 0;
    std::int64_t cleanupBytes = 0;
    std::int64_t recentCleanupFileCount = 0;
    std::int64_t recentCleanupBytes = 0;
    // The first entries in walk order that could not be read (at most 5), and why.
    std::vector<UnreadableFolder> unreadableEntries;

    std::string id() const { return url.native(); }
};

}  // namespace tallowmere
