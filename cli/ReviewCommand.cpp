#include <algorithm>
#include <iostream>
#include <set>

#include "Commands.h"
#include "Interruptible.h"
#include "MeasuredLocations.h"
#include "Options.h"
#include "ReviewFile.h"
#include "ReviewSheet.h"
#include "ScanReport.h"
#include "ScanRun.h"
#include "TerminalLines.h"
#include "Usage.h"
#include "catalog/LocationDiscovery.h"
#include "measurement/StorageTool.h"
#include "platform/AtomicFile.h"
#include "platform/PathRules.h"
#include "platform/ProcessEnvironment.h"
#include "platform/UserFolders.h"
#include "removal/RemovalMessages.h"
#include "removal/StorageRemovalPlan.h"
#include "text/JsonWriter.h"
#include "text/TerminalText.h"
#include "text/TextRules.h"

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
        ids.insert(typedPath(path).native());
    }
    return ids;
}

bool sameOwner(const std::string& typed, const std::string& owner) {
    return TextRules::asciiLowercased(typed) == TextRules::asciiLowercased(owner);
}

// The names, escaped for the terminal, separated by commas.
std::string listed(const std::vector<std::string>& names) {
    std::string text;
    for (const auto& name : names) {
        text += (text.empty() ? "" : ", ") + TerminalText::escaped(name);
    }
    return text;
}

// Before a scan that may be long: a name that no location could carry is refused at once,
// with the tools whose folders are present here.
void checkOwnerExists(const std::string& typed, const Options& options,
                      const std::filesystem::path& home) {
    const auto locations = AIStorageScanner::measuredLocations(
        home, processEnvironment(), layoutFrom(options), trackedPaths(options));
    std::vector<std::string> present;
    for (const auto& location : locations) {
        if (sameOwner(typed, location.owner)) {
            return;
        }
        std::error_code error;
        if (std::filesystem::is_directory(location.url(home), error) &&
            std::ranges::find(present, location.owner) == present.end()) {
            present.push_back(location.owner);
        }
    }
    throw RecordFileError("No tool is named “" + TerminalText::escaped(typed) + "”." +
                          (present.empty() ? std::string(" No tool has folders here.")
                                           : " Tools with folders here: " + listed(present) + "."));
}

// The tool the person named, matched without regard to case; refused with the tools that
// have storage.
const StorageTool& toolNamed(const std::string& typed, const std::vector<StorageTool>& tools) {
    const auto found = std::ranges::find_if(
        tools, [&](const StorageTool& tool) { return sameOwner(typed, tool.owner); });
    if (found != tools.end()) {
        return *found;
    }
    std::vector<std::string> owners;
    for (const auto& tool : tools) {
        owners.push_back(tool.owner);
    }
    throw RecordFileError(
        "No tool named “" + TerminalText::escaped(typed) + "” has storage in this scan." +
        (owners.empty() ? std::string() : " Tools with storage: " + listed(owners) + "."));
}

// Every --select path must be one of the tool's folders as the scan lists them.
void checkSelection(const std::set<std::string>& ids, const StorageTool& tool,
                    const std::filesystem::path& home) {
    const auto visible = tool.visibleFindings();
    for (const auto& id : ids) {
        if (std::ranges::find(visible, id, &StorageFinding::id) != visible.end()) {
            continue;
        }
        std::string folders;
        for (const auto& finding : visible) {
            folders += (folders.empty() ? "" : ", ") + displayPath(finding.url, home);
        }
        throw RecordFileError(displayPath(id, home) + " is not a location of " +
                              TerminalText::escaped(tool.owner) +
                              "; its locations are: " + folders + ".");
    }
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

// The review goes into a folder that exists (a mistyped folder is not made), and an existing
// file at `out` is replaced only when it is an earlier review: a path mistyped into --out must
// not cost the user a file.
void checkReplaceable(const std::filesystem::path& out) {
    std::error_code error;
    if (!std::filesystem::is_directory(out.parent_path(), error)) {
        throw RecordFileError("The folder " + TerminalText::escaped(out.parent_path().native()) +
                              " does not exist, so the review cannot be written there. Create "
                              "it, or choose another --out.");
    }
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
                                                     {"gentle", false},
                                                     {"layout", true},
                                                     {"out", true},
                                                     {"json", false},
                                                     {"help", false}});
    if (options.has("help")) {
        std::cout << reviewHelp;
        return success;
    }
    checkUsage(options);
    const bool includeRecent = options.has("include-recent");
    const auto out = typedPath(options.all("out").back());
    const auto layout = layoutFrom(options);
    checkReplaceable(out);
    checkOwnerExists(options.all("tool").back(), options, UserFolders::homeFolder());
    auto run = runScanFor(options, scanEntryLimit, !options.has("json"));
    if (!run) {
        return ExitCode::interrupted;
    }
    // Taken over, not copied: findings hold up to a thousand files each.
    const auto tools = StorageTool::group(std::move(run->scan.findings));
    const StorageTool& tool = toolNamed(options.all("tool").back(), tools);
    const std::string& owner = tool.owner;
    const auto selected = selectedIDs(options, tool, includeRecent);
    checkSelection(selected, tool, run->home);
    std::vector<StorageFinding> selectedFindings;
    std::ranges::copy_if(
        tool.findings, std::back_inserter(selectedFindings),
        [&](const StorageFinding& finding) { return selected.contains(finding.id()); });
    std::optional<LocationRemovalReview> review;
    std::string failure;
    const bool interrupted = runInterruptibly([&](std::stop_token stopToken) {
        try {
            review = LocationRemovalReview::prepare(tools, owner, selected, includeRecent,
                                                    walkOptions(options, stopToken));
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
    std::cout << (options.has("json")
                      ? reviewJson(*review, fileText) + "\n"
                      : forStandardOutput(reviewSheet(
                            *review, reachOf(selectedFindings, review->files, includeRecent),
                            run->home)));
    return success;
}

}  // namespace tallowmere::cli
