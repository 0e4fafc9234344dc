#include <charconv>
#include <cstdint>
#include <iostream>

#include "Commands.h"
#include "Options.h"
#include "ScanJson.h"
#include "ScanReport.h"
#include "ScanRun.h"
#include "TerminalLines.h"
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
    if (error != std::errc{} || end != text.data() + text.size() || value < 1) {
        throw UsageError("--max-entries needs a whole number of 1 or more, not '" + text + "'");
    }
    return value;
}

}  // namespace

int runScan(const std::vector<std::string>& arguments) {
    const Options options = parseOptions(arguments, {{"json", false},
                                                     {"track", true},
                                                     {"max-entries", true},
                                                     {"no-pause", false},
                                                     {"gentle", false},
                                                     {"layout", true},
                                                     {"save-summary", true},
                                                     {"help", false}});
    if (options.has("help")) {
        std::cout << scanHelp;
        return success;
    }
    const bool json = options.has("json");
    auto run = runScanFor(options, maxEntriesFrom(options), !json);
    if (!run) {
        return ExitCode::interrupted;
    }
    auto& [home, tracked, scan] = *run;
    // Saved before the output, which takes the scan over.
    std::optional<std::string> saveFailure;
    if (options.has("save-summary")) {
        const auto file = PathRules::absoluteStandardized(options.all("save-summary").back());
        try {
            StorageScanCache::save(scan, file, home, tracked);
        } catch (const std::exception& error) {
            saveFailure = error.what();
        }
    }
    if (json) {
        writeScanJson(std::cout, std::move(scan), home);
    } else {
        std::cout << forStandardOutput(scanReport(std::move(scan), home));
    }
    std::cout << std::flush;
    if (saveFailure) {
        std::cerr << "tallowmere-cli: couldn’t save the summary: " << *saveFailure << '\n';
        return failed;
    }
    return success;
}

}  // namespace tallowmere::cli
