#include <iostream>

#include "Commands.h"
#include "MeasuredLocations.h"
#include "Options.h"
#include "ScanJson.h"
#include "ScanReport.h"
#include "TerminalLines.h"
#include "Usage.h"
#include "persistence/StorageScanCache.h"
#include "platform/PathRules.h"
#include "platform/UserFolders.h"

namespace tallowmere::cli {

int runSummary(const std::vector<std::string>& arguments) {
    const Options options =
        parseOptions(arguments, {{"json", false}, {"track", true}, {"help", false}}, 1);
    if (options.has("help")) {
        std::cout << summaryHelp;
        return success;
    }
    if (options.operands.empty()) {
        throw UsageError("summary needs the summary file to read");
    }
    const auto home = UserFolders::homeFolder();
    auto scan = StorageScanCache::load(PathRules::absoluteStandardized(options.operands[0]), home,
                                       trackedPaths(options), currentDate());
    if (!scan) {
        std::cerr << "No usable summary.\n";
        return failed;
    }
    if (options.has("json")) {
        writeScanJson(std::cout, std::move(*scan), home);
    } else {
        std::cout << forStandardOutput(scanReport(std::move(*scan), home));
    }
    return success;
}

}  // namespace tallowmere::cli
