#include <unistd.h>

#include <iostream>

#include "Commands.h"
#include "Interruptible.h"
#include "Options.h"
#include "RecordJson.h"
#include "RemovalOutput.h"
#include "ReviewFile.h"
#include "ReviewSheet.h"
#include "ScanRun.h"
#include "Usage.h"
#include "platform/AtomicFile.h"
#include "platform/PathRules.h"
#include "removal/RemovalMessages.h"

namespace tallowmere::cli {

namespace {

// Asks on the terminal; true only for an explicit yes.
bool confirmedOnTerminal(const LocationRemovalReview& review) {
    std::cerr << "Permanently delete these items?\n"
              << permanentConfirmation(review)
              << "\nType “yes” to delete permanently: " << std::flush;
    std::string answer;
    return std::getline(std::cin, answer) && (answer == "yes" || answer == "y");
}

}  // namespace

int runRemove(const std::vector<std::string>& arguments) {
    const Options options = parseOptions(arguments,
                                         {{"permanent", false},
                                          {"yes", false},
                                          {"undo", true},
                                          {"json", false},
                                          {"no-pause", false},
                                          {"help", false}},
                                         1);
    if (options.has("help")) {
        std::cout << removeHelp;
        return success;
    }
    if (options.operands.empty()) {
        throw UsageError("remove needs the review file that 'tallowmere-cli review --out' wrote");
    }
    const auto file = PathRules::absoluteStandardized(options.operands[0]);
    const auto undoFile = options.has("undo")
                              ? PathRules::absoluteStandardized(options.all("undo").back())
                              : std::filesystem::path(file.native() + ".undo.json");
    const auto review = decodeReview(readRecordFile(file), file);
    const auto method =
        options.has("permanent") ? StorageRemovalMethod::permanent : StorageRemovalMethod::trash;
    if (method == StorageRemovalMethod::permanent && !options.has("yes")) {
        if (!::isatty(STDIN_FILENO)) {
            std::cerr << "Permanent deletion needs --yes when standard input is not a terminal. "
                         "Nothing was removed.\n";
            return failed;
        }
        if (!confirmedOnTerminal(review)) {
            std::cerr << "Nothing was removed.\n";
            return failed;
        }
    }
    forgetSummary();
    StorageCleanupResult result;
    runInterruptibly([&](std::stop_token stopToken) {
        result = removeReviewed(review, method, walkOptions(options, stopToken));
    });
    if (method == StorageRemovalMethod::trash && result.moved > 0) {
        AtomicFile::write(undoFile, encodeUndoItems(result.items) + "\n");
    }
    reportOutcome({"moved", result.moved, "items", result.items, result.errors,
                   RemovalMessages::removalNotice(result, method),
                   RemovalMessages::removalError(result, method)},
                  options.has("json"));
    return result.errors.empty() ? success : failed;
}

}  // namespace tallowmere::cli
