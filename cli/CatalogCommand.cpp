#include <cstdio>
#include <iostream>

#include "Commands.h"
#include "Options.h"
#include "ScanJson.h"
#include "Usage.h"
#include "catalog/ToolCatalog.h"
#include "text/TerminalText.h"

namespace tallowmere::cli {

int runCatalog(const std::vector<std::string>& arguments) {
    const Options options = parseOptions(arguments, {{"json", false}, {"help", false}});
    if (options.has("help")) {
        std::cout << catalogHelp;
        return success;
    }
    const auto& locations = AIStorageScanner::locations();
    if (options.has("json")) {
        std::cout << catalogJson(locations, AIStorageScanner::supportedOwners()) << '\n';
        return success;
    }
    for (const auto& location : locations) {
        std::cout << TerminalText::escaped(location.owner) << " · " << location.category << " · ~/"
                  << TerminalText::escaped(location.relativePath) << '\n';
    }
    return success;
}

}  // namespace tallowmere::cli
