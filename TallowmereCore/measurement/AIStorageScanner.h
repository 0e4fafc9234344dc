#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <functional>
#include <stop_token>
#include <vector>

#include "measurement/Date.h"
#include "measurement/StorageLocation.h"
#include "measurement/StorageScan.h"

namespace tallowmere {

// Thrown by a scan whose stop was requested; nothing of the scan is returned.
struct ScanCancelled : std::exception {
    const char* what() const noexcept override { return "The scan was cancelled."; }
};

// Counts a walk as it goes, for a live display read on another thread. The counts lag the walk
// by fewer than 256 entries per thread.
struct ScanMeter {
    std::atomic<std::int64_t> entries = 0;
    std::atomic<std::int64_t> allocatedBytes = 0;
    // The place, in the scan's list of locations, of the one a walk entered last.
    std::atomic<std::size_t> location = 0;
};

struct ScanOptions {
    // Checked before every location and every entry.
    std::stop_token stopToken;
    // Sleep 2 ms after every 256 entries so a long walk leaves the disk to others.
    bool pauses = true;
    // Threads that walk, the calling thread among them: 0 for one per core, 1 for the calling
    // thread alone. The result is the same either way.
    std::size_t threads = 0;
    // Kept up to date while the walk runs, when given.
    ScanMeter* meter = nullptr;
};

}  // namespace tallowmere

namespace tallowmere::AIStorageScanner {

// Given each progress snapshot to keep: a copy of the findings so far, the handler's own.
using ProgressHandler = std::function<void(StorageScan)>;

// Measures `locations` under `home` (absolute, with links resolved) in order, walking at most
// `maxEntriesPerLocation` entries of each folder. Calls `onProgress` on the calling thread at
// most every 0.25 s with the findings so far. Problems are counted in the result; the only
// error is ScanCancelled. With several threads, any thread walks any folder, but the result is
// the one a single thread walking every folder in order gives.
StorageScan scan(const std::filesystem::path& home, const std::vector<StorageLocation>& locations,
                 std::int64_t maxEntriesPerLocation, const ProgressHandler& onProgress = {},
                 const ScanOptions& options = {});

// True for a log file of a "Logs" location that is at least a week old at `now`, or of any
// age when `includeRecent` is set. Pure.
bool isOldLog(const std::filesystem::path& file, Date modified, const std::string& category,
              Date now, bool includeRecent);

}  // namespace tallowmere::AIStorageScanner
