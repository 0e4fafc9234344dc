#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "Options.h"
#include "measurement/AIStorageScanner.h"
#include "measurement/StorageScan.h"

namespace tallowmere::cli {

// A finished scan of the current user's locations and tracked folders.
struct ScanRun {
    std::filesystem::path home;
    std::vector<std::string> tracked;
    StorageScan scan;
};

// Scans as the `scan` command does, reading --track, --layout and --no-pause from `options`
// and showing progress on standard error when `showProgress` and it is a terminal. Nothing
// when Ctrl-C stopped it (a message is printed).
std::optional<ScanRun> runScanFor(const Options& options, std::int64_t maxEntries,
                                  bool showProgress);

// The scan options of a walk: pauses unless --no-pause, stopped by `stopToken`.
ScanOptions walkOptions(const Options& options, std::stop_token stopToken);

}  // namespace tallowmere::cli
