#include <cerrno>
#include <exception>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "Commands.h"
#include "Usage.h"
#include "platform/FileSystemError.h"
#include "platform/ProcessLimits.h"

using namespace tallowmere::cli;

namespace {

struct Command {
    int (*run)(const std::vector<std::string>&);
    const char* help;
};

const std::map<std::string, Command>& commands() {
    static const std::map<std::string, Command> table = {
        {"catalog", {runCatalog, catalogHelp}}, {"locations", {runLocations, locationsHelp}},
        {"scan", {runScan, scanHelp}},          {"summary", {runSummary, summaryHelp}},
        {"review", {runReview, reviewHelp}},    {"remove", {runRemove, removeHelp}},
        {"restore", {runRestore, restoreHelp}}, {"empty-trash", {runEmptyTrash, emptyTrashHelp}}};
    return table;
}

int showHelp(const std::vector<std::string>& arguments) {
    if (arguments.empty()) {
        std::cout << overviewHelp;
        return success;
    }
    const auto found = commands().find(arguments[0]);
    if (arguments.size() > 1 || found == commands().end()) {
        throw UsageError("help takes one command name, such as 'help scan'");
    }
    std::cout << found->second.help;
    return success;
}

int dispatch(const std::string& command, const std::vector<std::string>& arguments) {
    if (const auto found = commands().find(command); found != commands().end()) {
        return found->second.run(arguments);
    }
    if (command == "--help" || command == "-h" || command == "help") {
        return showHelp(arguments);
    }
    if (command == "--version" || command == "-V") {
        std::cout << "tallowmere-cli " << TALLOWMERE_VERSION << '\n';
        return success;
    }
    throw UsageError("unknown command '" + command + "'");
}

// The cause of a failed write, when errno still holds one: the stream keeps no reason, and
// errno may have been set since by something else.
std::string writeFailureCause(int code) {
    switch (code) {
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
        case EIO:
        case EBADF:
            return ": " + tallowmere::describeErrno(code);
        default:
            return ".";
    }
}

// A report that did not reach its reader is a failure, whatever the command did.
int checkedOutput(int code) {
    std::cout.flush();
    if (std::cout) {
        return code;
    }
    std::cerr << "tallowmere-cli: could not write to standard output" << writeFailureCause(errno)
              << '\n';
    return code == success ? failed : code;
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
        return checkedOutput(dispatch(argv[1], std::vector<std::string>(argv + 2, argv + argc)));
    } catch (const UsageError& error) {
        std::cerr << "tallowmere-cli: " << error.what()
                  << "\nRun 'tallowmere-cli --help' for usage.\n";
        return usageError;
    } catch (const std::exception& error) {
        std::cerr << "tallowmere-cli: " << error.what() << '\n';
        return checkedOutput(failed);
    }
}
