#include <iostream>

#include "Commands.h"
#include "Confirmation.h"
#include "Interruptible.h"
#include "Options.h"
#include "RemovalOutput.h"
#include "UndoFile.h"
#include "Usage.h"
#include "platform/PathRules.h"
#include "removal/TrashDeletion.h"
#include "text/SizeText.h"

namespace tallowmere::cli {

namespace {

std::string items(std::int64_t count) {
    return std::to_string(count) + (count == 1 ? " item" : " items");
}

std::string question(const std::vector<TrashedStorageFile>& trashed) {
    return "Permanently delete the " + items(static_cast<std::int64_t>(trashed.size())) +
           " this undo file moved to the Trash? Nothing else in the Trash is touched. This "
           "cannot be undone.";
}

std::optional<std::string> notice(const AIStorageCleanup::StorageTrashDeletionResult& result) {
    if (result.deleted < 1) {
        return std::nullopt;
    }
    return "Deleted " + items(result.deleted) + " from the Trash for good, freeing " +
           SizeText::bytes(result.bytesFreed) + ".";
}

std::optional<std::string> error(const std::vector<std::string>& errors) {
    if (errors.empty()) {
        return std::nullopt;
    }
    std::string text =
        "Some items were not deleted. Those that changed stay in the Trash and in the undo "
        "file.\n";
    for (std::size_t index = 0; index < std::min<std::size_t>(errors.size(), 3); ++index) {
        text += "\n" + errors[index];
    }
    return text;
}

}  // namespace

int runEmptyTrash(const std::vector<std::string>& arguments) {
    const Options options = parseOptions(
        arguments,
        {{"yes", false}, {"json", false}, {"gentle", false}, {"no-pause", false}, {"help", false}},
        1);
    if (options.has("help")) {
        std::cout << emptyTrashHelp;
        return success;
    }
    if (options.operands.empty()) {
        throw UsageError("empty-trash needs the undo file that 'tallowmere-cli remove' wrote");
    }
    const auto path = PathRules::absoluteStandardized(options.operands[0]);
    UndoFile undo = UndoFile::open(path, UndoFile::Missing::refuse);
    const bool json = options.has("json");
    if (undo.items().empty() && !json) {
        std::cerr << "The undo file holds no items, so nothing was deleted.\n";
        return success;
    }
    if (!undo.items().empty() && !permanentDeletionConfirmed(options, question(undo.items()))) {
        return failed;
    }
    AIStorageCleanup::StorageTrashDeletionResult result;
    const bool interrupted = runInterruptibly([&](std::stop_token stopToken) {
        RemovalOptions deletionOptions;
        deletionOptions.pauses = pausesFrom(options);
        deletionOptions.stopToken = stopToken;
        result = AIStorageCleanup::deleteFromTrash(undo.items(), deletionOptions);
    });
    undo.save(result.remaining);
    reportOutcome(
        {"deleted", result.deleted, result.bytesFreed, "remaining", result.remaining, result.errors,
         notice(result), error(json ? result.errors : escapedTexts(result.errors))},
        json);
    if (interrupted) {
        std::cerr << "Interrupted: the items not yet deleted stay in the Trash and in the undo "
                     "file.\n";
        return ExitCode::interrupted;
    }
    return result.errors.empty() ? success : failed;
}

}  // namespace tallowmere::cli
