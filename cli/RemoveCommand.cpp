#include <iostream>
#include <stop_token>

#include "Commands.h"
#include "Confirmation.h"
#include "Interruptible.h"
#include "MeasuredLocations.h"
#include "Options.h"
#include "RemovalOutput.h"
#include "ReviewFile.h"
#include "ReviewSheet.h"
#include "UndoFile.h"
#include "Usage.h"
#include "catalog/LocationDiscovery.h"
#include "persistence/StorageScanCache.h"
#include "platform/PathRules.h"
#include "platform/ProcessEnvironment.h"
#include "platform/UserFolders.h"
#include "removal/RemovalMessages.h"
#include "text/TerminalText.h"

namespace tallowmere::cli {

namespace {

// What the review may touch now: its owner's locations as a scan would measure them, for the
// review's layout and the folders tracked on this command line.
RemovalScope scopeOf(const ReviewRecord& record, const Options& options) {
    const auto home = UserFolders::homeFolder();
    return RemovalScope(record.review.owner, home,
                        AIStorageScanner::measuredLocations(home, processEnvironment(),
                                                            record.layout, trackedPaths(options)));
}

// Writes the undo records that are still only in memory; when that fails, prints them, so
// that they can still be saved by hand.
void flushUndo(UndoFile& undo) {
    try {
        undo.flush();
    } catch (const RecordFileError& error) {
        std::cerr << error.what()
                  << "\nKeep these undo records in a file to restore the items with "
                     "'tallowmere-cli restore':\n"
                  << encodeUndoItems(undo.items()) << '\n';
    }
    undo.removeIfUnused();
}

}  // namespace

int runRemove(const std::vector<std::string>& arguments) {
    const Options options = parseOptions(arguments,
                                         {{"permanent", false},
                                          {"yes", false},
                                          {"undo", true},
                                          {"track", true},
                                          {"json", false},
                                          {"no-pause", false},
                                          {"gentle", false},
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
    const auto undoPath = options.has("undo")
                              ? PathRules::absoluteStandardized(options.all("undo").back())
                              : std::filesystem::path(file.native() + ".undo.json");
    const ReviewRecord record = decodeReview(readRecordFile(file), file);
    const auto method =
        options.has("permanent") ? StorageRemovalMethod::permanent : StorageRemovalMethod::trash;
    if (method == StorageRemovalMethod::permanent &&
        !permanentDeletionConfirmed(
            options, "Permanently delete these items?\n" + permanentConfirmation(record.review))) {
        return failed;
    }
    const RemovalScope scope = scopeOf(record, options);
    if (scope.isEmpty()) {
        std::cerr << "“" << TerminalText::escaped(record.review.owner)
                  << "” has no storage locations here. If it is a tracked folder, give it again "
                     "with --track.\n";
    }
    // The undo file is ours and known to be writable before anything moves.
    std::optional<UndoFile> undo;
    if (method == StorageRemovalMethod::trash) {
        undo = UndoFile::open(undoPath, UndoFile::Missing::create);
        undo->save(undo->items());
    }
    StorageScanCache::forget();
    std::stop_source stopRemoval;
    std::string undoFailure;
    RemovalOptions removalOptions;
    removalOptions.pauses = pausesFrom(options);
    removalOptions.stopToken = stopRemoval.get_token();
    removalOptions.onTrashed = [&](const TrashedStorageFile& item) {
        try {
            undo->add(item);
        } catch (const RecordFileError& error) {
            undoFailure = error.what();
            stopRemoval.request_stop();  // nothing more moves without a record kept
        }
    };
    StorageCleanupResult result;
    const bool interrupted = runInterruptibly([&](std::stop_token stopToken) {
        const std::stop_callback forward(stopToken, [&] { stopRemoval.request_stop(); });
        result = removeReviewed(record.review, method, scope, removalOptions);
    });
    if (undo) {
        flushUndo(*undo);
    }
    const bool json = options.has("json");
    StorageCleanupResult shown = result;
    if (!json) {
        shown.errors = escapedTexts(std::move(shown.errors));
    }
    reportOutcome({"moved", result.moved, std::nullopt, "items", result.items, result.errors,
                   RemovalMessages::removalNotice(result, method),
                   RemovalMessages::removalError(shown, method)},
                  json);
    if (!json && !result.items.empty() && undoFailure.empty()) {
        std::cout << afterTrashing(result.items, undoPath);
    }
    if (!undoFailure.empty()) {
        std::cerr << undoFailure << " The removal stopped there.\n";
        return failed;
    }
    if (interrupted) {
        std::cerr << "Interrupted: the removal stopped after the item in hand; what is listed "
                     "above is all that left its place.\n";
        return ExitCode::interrupted;
    }
    return result.errors.empty() ? success : failed;
}

}  // namespace tallowmere::cli
