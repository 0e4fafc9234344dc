#include "ScanRun.h"

#include <unistd.h>

#include <iostream>

#include "Interruptible.h"
#include "MeasuredLocations.h"
#include "catalog/LocationDiscovery.h"
#include "measurement/AIStorageScanner.h"
#include "platform/ProcessEnvironment.h"
#include "platform/UserFolders.h"
#include "text/SizeText.h"

namespace tallowmere::cli {

namespace {

// A one-line progress display on a terminal, redrawn in place and cleared at the end.
class ProgressLine {
public:
    explicit ProgressLine(bool shown) : m_shown(shown) {}
    ~ProgressLine() {
        if (m_shown && m_drawn) {
            std::cerr << "\r\033[K" << std::flush;
        }
    }

    bool shown() const { return m_shown; }

    void show(const StorageScan& soFar) {
        m_drawn = true;
        std::cerr << "\r\033[KScanning… " << soFar.findings.size() << " folders measured · "
                  << SizeText::bytes(soFar.allocatedBytes()) << std::flush;
    }

private:
    const bool m_shown;
    bool m_drawn = false;
};

}  // namespace

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
    ProgressLine progress(showProgress && ::isatty(STDERR_FILENO));
    // Without a progress line the scanner need not copy snapshots at all.
    AIStorageScanner::ProgressHandler onProgress;
    if (progress.shown()) {
        onProgress = [&](const StorageScan& soFar) { progress.show(soFar); };
    }
    const bool interrupted = runInterruptibly([&](std::stop_token stopToken) {
        run.scan = AIStorageScanner::scan(run.home, locations, maxEntries, onProgress,
                                          walkOptions(options, stopToken));
    });
    if (interrupted) {
        std::cerr << "\r\033[KScan interrupted.\n";
        return std::nullopt;
    }
    return run;
}

}  // namespace tallowmere::cli
