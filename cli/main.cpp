#include <exception>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "Commands.h"
#include "Usage.h"
#include "platform/ProcessLimits.h"

using namespace tallowmere::cli;

namespace {

int dispatch(const std::string& command, const std::vector<std::string>& arguments) {
    using Command = int (*)(const std::vector<std::string>&);
    static const std::map<std::string, Command> commands = {
        {"catalog", runCatalog}, {"locations", runLocations}, {"scan", runScan},
        {"summary", runSummary}, {"review", runReview},       {"remove", runRemove},
        {"restore", runRestore}};
    if (const auto found = commands.find(command); found != commands.end()) {
        return found->second(arguments);
    }
    if (command == "--help" || command == "-h" || command == "help") {
        std::cout << overviewHelp;
        return success;
    }
    throw UsageError("unknown command '" + command + "'");
}

}  // namespace

int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    tallowmere::ProcessLimits::raiseOpenFileLimit();
    if (argc < 2) {
        std::cerr << overviewHelp;
        return usageError;
    }
    try {
        return dispatch(argv[1], std::vector<std::string>(argv + 2, argv + argc));
    } catch (const UsageError& error) {
        std::cerr << "tallowmere-cli: " << error.what()
                  << "\nRun 'tallowmere-cli --help' for usage.\n";
        return usageError;
    } catch (const std::exception& error) {
        std::cerr << "tallowmere-cli: " << error.what() << '\n';
        return failed;
    }
}
