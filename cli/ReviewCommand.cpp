#include <algorithm>
#include <iostream>
#include <set>

#include "Commands.h"
#include "Interruptible.h"
#include "MeasuredLocations.h"
#include "Options.h"
#include "ReviewFile.h"
#include "ReviewSheet.h"
#include "ScanRun.h"
#include "Usage.h"
#include "measurement/StorageTool.h"
#include "platform/AtomicFile.h"
#include "platform/PathRules.h"
#include "removal/RemovalMessages.h"
#include "removal/StorageRemovalPlan.h"
#include "text/JsonWriter.h"
#include "text/TerminalText.h"

namespace tallowmere::cli {

namespace {

constexpr std::int64_t scanEntryLimit = 100000;

std::set<std::string> selectedIDs(const Options& options, const StorageTool& tool,
                                  bool includeRecent) {
    std::set<std::string> ids;
    if (options.has("all")) {
        for (const auto& finding : tool.visibleFindings()) {
            if (StorageRemovalPlan::canSelect(finding, includeRecent)) {
                ids.insert(finding.id());
            }
        }
    }
    for (const auto& path : options.all("select")) {
        ids.insert(PathRules::absoluteStandardized(path).native());
    }
    return ids;
}

// The review's file text followed by what the sheet derives from it.
std::string reviewJson(const LocationRemovalReview& review, const std::string& fileText) {
    JsonWriter extra;
    extra.beginObject();
    extra.key("selectionSummary");
    extra.string(review.selectionSummary());
    extra.key("allocatedBytes");
    extra.integer(review.allocatedBytes());
    extra.endObject();
    return fileText.substr(0, fileText.size() - 1) + "," + extra.text().substr(1);
}

// An existing file at `out` is replaced only when it is an earlier review: a path mistyped
// into --out must not cost the user a file.
void checkReplaceable(const std::filesystem::path& out) {
    std::error_code error;
    if (!std::filesystem::exists(std::filesystem::symlink_status(out, error))) {
        return;
    }
    try {
        decodeReview(readRecordFile(out), out);
    } catch (const RecordFileError&) {
        throw RecordFileError(TerminalText::escaped(out.native()) +
                              " exists and is not a review of tallowmere-cli, so it was not "
                              "replaced. Choose another --out.");
    }
}

void checkUsage(const Options& options) {
    if (!options.has("tool") || !options.has("out")) {
        throw UsageError("review needs --tool OWNER and --out FILE");
    }
    if (options.has("all") == options.has("select")) {
        throw UsageError("review needs either --select PATH (repeatable) or --all");
    }
}

}  // namespace

int runReview(const std::vector<std::string>& arguments) {
    const Options options = parseOptions(arguments, {{"tool", true},
                                                     {"select", true},
                                                     {"all", false},
                                                     {"include-recent", false},
                                                     {"track", true},
                                                     {"no-pause", false},
                                                     {"layout", true},
                                                     {"out", true},
                                                     {"json", false},
                                                     {"help", false}});
    if (options.has("help")) {
        std::cout << reviewHelp;
        return success;
    }
    checkUsage(options);
    const std::string owner = options.all("tool").back();
    const bool includeRecent = options.has("include-recent");
    const auto out = PathRules::absoluteStandardized(options.all("out").back());
    const auto layout = layoutFrom(options);
    checkReplaceable(out);
    const auto run = runScanFor(options, scanEntryLimit, !options.has("json"));
    if (!run) {
        return ExitCode::interrupted;
    }
    const auto tools = StorageTool::group(run->scan.findings);
    const auto tool = std::ranges::find(tools, owner, &StorageTool::owner);
    if (tool == tools.end()) {
        std::cerr << "No tool named “" << TerminalText::escaped(owner)
                  << "” has storage in this scan.\n";
        return failed;
    }
    std::optional<LocationRemovalReview> review;
    std::string failure;
    const bool interrupted = runInterruptibly([&](std::stop_token stopToken) {
        try {
            review = LocationRemovalReview::prepare(tools, owner,
                                                    selectedIDs(options, *tool, includeRecent),
                                                    includeRecent, walkOptions(options, stopToken));
        } catch (const ScanCancelled&) {
            throw;
        } catch (const std::exception& error) {
            failure = error.what();
        }
    });
    if (interrupted) {
        std::cerr << "Review interrupted. Nothing was moved.\n";
        return ExitCode::interrupted;
    }
    if (!failure.empty()) {
        std::cerr << RemovalMessages::preparationFailed(failure) << '\n';
        return failed;
    }
    if (!review) {
        std::cerr << "Nothing to review.\n";
        return failed;
    }
    const std::string fileText = encodeReview({*review, layout});
    AtomicFile::write(out, fileText + "\n");
    std::cout << (options.has("json") ? reviewJson(*review, fileText) + "\n"
                                      : reviewSheet(*review, run->home));
    return success;
}

}  // namespace tallowmere::cli
