#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "measurement/FileEntry.h"
#include "measurement/StorageLocation.h"
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

    std::string id() const { return url.native(); }
};

}  // namespace tallowmere
