#include <iostream>

#include "Commands.h"
#include "Interruptible.h"
#include "Options.h"
#include "RecordJson.h"
#include "RemovalOutput.h"
#include "ReviewFile.h"
#include "ScanRun.h"
#include "Usage.h"
#include "platform/AtomicFile.h"
#include "platform/PathRules.h"
#include "removal/FileCleanup.h"
#include "removal/RemovalMessages.h"

namespace tallowmere::cli {

int runRestore(const std::vector<std::string>& arguments) {
    const Options options =
        parseOptions(arguments, {{"json", false}, {"no-pause", false}, {"help", false}}, 1);
    if (options.has("help")) {
        std::cout << restoreHelp;
        return success;
    }
    if (options.operands.empty()) {
        throw UsageError("restore needs the undo file that 'tallowmere-cli remove' wrote");
    }
    const auto file = PathRules::absoluteStandardized(options.operands[0]);
    const auto items = decodeUndoItems(readRecordFile(file), file);
    forgetSummary();
    StorageRestoreResult result;
    runInterruptibly([&](std::stop_token stopToken) {
        result = AIStorageCleanup::restore(items, walkOptions(options, stopToken));
    });
    AtomicFile::write(file, encodeUndoItems(result.remaining) + "\n");
    reportOutcome({"restored", result.restored, "remaining", result.remaining, result.errors,
                   RemovalMessages::restoreNotice(result), RemovalMessages::restoreError(result)},
                  options.has("json"));
    return result.errors.empty() ? success : failed;
}

}  // namespace tallowmere::cli
