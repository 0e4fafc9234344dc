#include <charconv>
#include <cstdint>
#include <iostream>

#include "Commands.h"
#include "Options.h"
#include "ScanJson.h"
#include "ScanReport.h"
#include "ScanRun.h"
#include "Usage.h"
#include "persistence/StorageScanCache.h"
#include "platform/PathRules.h"

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

}  // namespace

int runScan(const std::vector<std::string>& arguments) {
    const Options options = parseOptions(arguments, {{"json", false},
                                                     {"track", true},
                                                     {"max-entries", true},
                                                     {"no-pause", false},
                                                     {"layout", true},
                                                     {"save-summary", true},
                                                     {"help", false}});
    if (options.has("help")) {
        std::cout << scanHelp;
        return success;
    }
    const bool json = options.has("json");
    const auto run = runScanFor(options, maxEntriesFrom(options), !json);
    if (!run) {
        return ExitCode::interrupted;
    }
    const auto& [home, tracked, scan] = *run;
    std::cout << (json ? scanJson(scan, home) + "\n" : scanReport(scan, home)) << std::flush;
    if (options.has("save-summary")) {
        const auto file = PathRules::absoluteStandardized(options.all("save-summary").back());
        try {
            StorageScanCache::save(scan, file, home, tracked);
        } catch (const std::exception& error) {
            std::cerr << "tallowmere-cli: couldn’t save the summary: " << error.what() << '\n';
            return failed;
        }
    }
    return success;
}

}  // namespace tallowmere::cli
