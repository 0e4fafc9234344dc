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

namespace {

std::string resultJson(const StorageRestoreResult& result, const std::optional<std::string>& notice,
                       const std::optional<std::string>& error) {
    JsonWriter json;
    json.beginObject();
    json.key("restored");
    json.integer(result.restored);
    json.key("remaining");
    json.beginArray();
    for (const auto& item : result.remaining) {
        writeTrashedItem(json, item);
    }
    json.endArray();
    writeTexts(json, "errors", result.errors);
    writeOptionalText(json, "notice", notice);
    writeOptionalText(json, "error", error);
    json.endObject();
    return json.text();
}

}  // namespace

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
    const auto notice = RemovalMessages::restoreNotice(result);
    const auto error = RemovalMessages::restoreError(result);
    if (options.has("json")) {
        std::cout << resultJson(result, notice, error) << '\n';
    } else {
        printOutcome(notice, error);
    }
    return result.errors.empty() ? success : failed;
}

}  // namespace tallowmere::cli
