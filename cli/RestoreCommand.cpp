#include <iostream>

#include "Commands.h"
#include "Interruptible.h"
#include "Options.h"
#include "RemovalOutput.h"
#include "UndoFile.h"
#include "Usage.h"
#include "persistence/StorageScanCache.h"
#include "platform/PathRules.h"
#include "removal/FileCleanup.h"
#include "removal/RemovalMessages.h"

namespace tallowmere::cli {

int runRestore(const std::vector<std::string>& arguments) {
    const Options options = parseOptions(
        arguments, {{"json", false}, {"no-pause", false}, {"gentle", false}, {"help", false}}, 1);
    if (options.has("help")) {
        std::cout << restoreHelp;
        return success;
    }
    if (options.operands.empty()) {
        throw UsageError("restore needs the undo file that 'tallowmere-cli remove' wrote");
    }
    const auto path = PathRules::absoluteStandardized(options.operands[0]);
    UndoFile undo = UndoFile::open(path, UndoFile::Missing::refuse);
    StorageScanCache::forget();
    StorageRestoreResult result;
    const bool interrupted = runInterruptibly([&](std::stop_token stopToken) {
        RemovalOptions restoreOptions;
        restoreOptions.pauses = pausesFrom(options);
        restoreOptions.stopToken = stopToken;
        result = AIStorageCleanup::restore(undo.items(), restoreOptions);
    });
    undo.save(result.remaining);
    const bool json = options.has("json");
    StorageRestoreResult shown = result;
    if (!json) {
        shown.errors = escapedTexts(std::move(shown.errors));
    }
    reportOutcome(
        {"restored", result.restored, std::nullopt, "remaining", result.remaining, result.errors,
         RemovalMessages::restoreNotice(result), RemovalMessages::restoreError(shown)},
        json);
    if (interrupted) {
        std::cerr << "Interrupted: the items not yet restored stay in the Trash and in the undo "
                     "file.\n";
        return ExitCode::interrupted;
    }
    return result.errors.empty() ? success : failed;
}

}  // namespace tallowmere::cli
