#include <unistd.h>

#include <charconv>
#include <cstdint>
#include <iostream>

#include "Commands.h"
#include "Interruptible.h"
#include "Options.h"
#include "ScanJson.h"
#include "ScanReport.h"
#include "Usage.h"
#include "catalog/CustomFolder.h"
#include "catalog/ToolCatalog.h"
#include "measurement/AIStorageScanner.h"
#include "platform/PathRules.h"
#include "platform/UserFolders.h"
#include "text/SizeText.h"

namespace tallowmere::cli {

namespace {

constexpr std::int64_t defaultMaxEntries = 100000;

std::int64_t maxEntriesFrom(const Options& options) {
    const auto values = options.all("max-entries");
    if (values.empty()) {
        return defaultMaxEntries;
    }
    const std::string& text = values.back();
    std::int64_t value = -1;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || value < 0) {
        throw UsageError("--max-entries needs a whole number of 0 or more, not '" + text + "'");
    }
    return value;
}

std::vector<StorageLocation> locationsToMeasure(const Options& options) {
    std::vector<StorageLocation> locations = AIStorageScanner::locations();
    for (const auto& path : options.all("track")) {
        if (path.empty()) {
            throw UsageError("--track needs a folder path");
        }
        locations.push_back(customFolderLocation(PathRules::absoluteStandardized(path)));
    }
    return locations;
}

// A one-line progress display on a terminal, redrawn in place and cleared at the end.
class ProgressLine {
public:
    explicit ProgressLine(bool shown) : m_shown(shown) {}
    ~ProgressLine() {
        if (m_shown && m_drawn) {
            std::cerr << "\r\033[K" << std::flush;
        }
    }

    void show(const StorageScan& soFar) {
        if (!m_shown) {
            return;
        }
        m_drawn = true;
        std::cerr << "\r\033[KScanning… " << soFar.findings.size() << " folders measured · "
                  << SizeText::bytes(soFar.allocatedBytes()) << std::flush;
    }

private:
    const bool m_shown;
    bool m_drawn = false;
};

}  // namespace

int runScan(const std::vector<std::string>& arguments) {
    const Options options = parseOptions(arguments, {{"json", false},
                                                     {"track", true},
                                                     {"max-entries", true},
                                                     {"no-pause", false},
                                                     {"help", false}});
    if (options.has("help")) {
        std::cout << scanHelp;
        return success;
    }
    const bool json = options.has("json");
    const std::int64_t maxEntries = maxEntriesFrom(options);
    const auto locations = locationsToMeasure(options);
    const auto home = UserFolders::homeFolder();

    StorageScan scan;
    {
        ProgressLine progress(!json && ::isatty(STDERR_FILENO));
        const bool interrupted = runInterruptibly([&](std::stop_token stopToken) {
            ScanOptions scanOptions;
            scanOptions.stopToken = stopToken;
            scanOptions.pauses = !options.has("no-pause");
            scan = AIStorageScanner::scan(
                home, locations, maxEntries,
                [&](const StorageScan& soFar) { progress.show(soFar); }, scanOptions);
        });
        if (interrupted) {
            std::cerr << "\r\033[KScan interrupted.\n";
            return ExitCode::interrupted;
        }
    }
    std::cout << (json ? scanJson(scan, home) + "\n" : scanReport(scan, home));
    return success;
}

}  // namespace tallowmere::cli
