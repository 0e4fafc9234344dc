#include "ScanRun.h"

#include <unistd.h>

#include <iostream>

#include "Interruptible.h"
#include "MeasuredLocations.h"
#include "ProgressLine.h"
#include "ScanReport.h"
#include "catalog/LocationDiscovery.h"
#include "measurement/AIStorageScanner.h"
#include "platform/ProcessEnvironment.h"
#include "platform/UserFolders.h"

namespace tallowmere::cli {

ScanOptions walkOptions(const Options& options, std::stop_token stopToken) {
    ScanOptions scanOptions;
    scanOptions.stopToken = stopToken;
    scanOptions.pauses = pausesFrom(options);
    return scanOptions;
}

std::optional<ScanRun> runScanFor(const Options& options, std::int64_t maxEntries,
                                  bool showProgress) {
    ScanRun run{UserFolders::homeFolder(), trackedPaths(options), {}};
    const auto locations = AIStorageScanner::measuredLocations(run.home, processEnvironment(),
                                                               layoutFrom(options), run.tracked);
    ScanMeter meter;
    std::optional<ProgressLine> progress;
    if (showProgress && ::isatty(STDERR_FILENO)) {
        std::vector<std::string> names;
        for (const auto& location : locations) {
            names.push_back(displayPath(location.url(run.home), run.home));
        }
        progress.emplace(meter, std::move(names));
    }
    const bool interrupted = runInterruptibly([&](std::stop_token stopToken) {
        ScanOptions scanOptions = walkOptions(options, stopToken);
        scanOptions.meter = progress ? &meter : nullptr;
        run.scan = AIStorageScanner::scan(run.home, locations, maxEntries, {}, scanOptions);
    });
    progress.reset();
    if (interrupted) {
        std::cerr << "Scan interrupted.\n";
        return std::nullopt;
    }
    return run;
}

}  // namespace tallowmere::cli
