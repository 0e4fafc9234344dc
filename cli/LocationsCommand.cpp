#include <iostream>

#include "Commands.h"
#include "MeasuredLocations.h"
#include "Options.h"
#include "ScanJson.h"
#include "ScanReport.h"
#include "Usage.h"
#include "catalog/LocationDiscovery.h"
#include "platform/ProcessEnvironment.h"
#include "platform/UserFolders.h"
#include "text/TerminalText.h"

namespace tallowmere::cli {

int runLocations(const std::vector<std::string>& arguments) {
    const Options options =
        parseOptions(arguments, {{"json", false}, {"layout", true}, {"help", false}});
    if (options.has("help")) {
        std::cout << locationsHelp;
        return success;
    }
    const StorageLayout layout = layoutFrom(options);
    const auto home = UserFolders::homeFolder();
    const auto locations = AIStorageScanner::discoverLocations(home, processEnvironment(), layout);
    if (options.has("json")) {
        std::cout << locationsJson(locations, home) << '\n';
        return success;
    }
    for (const auto& location : locations) {
        std::cout << TerminalText::escaped(location.owner) << " · "
                  << TerminalText::escaped(location.category) << " · "
                  << displayPath(location.url(home), home) << '\n';
    }
    return success;
}

}  // namespace tallowmere::cli
