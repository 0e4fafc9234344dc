#include "ScanReport.h"

#include <algorithm>
#include <iterator>
#include <ranges>
#include <set>
#include <utility>

#include "ReviewReach.h"
#include "guidance/StorageGuidance.h"
#include "measurement/StorageTool.h"
#include "platform/PathRules.h"
#include "removal/StorageRemovalPlan.h"
#include "text/CountText.h"
#include "text/SizeText.h"
#include "text/TerminalText.h"

namespace tallowmere::cli {

namespace {

std::string counted(std::int64_t count, const char* singular, const char* plural) {
    return std::to_string(count) + " " + (count == 1 ? singular : plural);
}

std::string padded(const std::string& text, std::size_t width) {
    return text.size() >= width ? text : std::string(width - text.size(), ' ') + text;
}

constexpr std::size_t unreadableShown = 3;

const StorageFinding& dereference(const StorageFinding* finding) {
    return *finding;
}

// The folders listed in the tool's section that lie inside `finding`'s: how much they hold
// and where they stand.
std::string nestedText(const StorageFinding& finding,
                       const std::vector<const StorageFinding*>& listed) {
    std::int64_t bytes = 0;
    std::int64_t count = 0;
    bool allBelow = true;
    bool passedIt = false;
    for (const StorageFinding& other : listed | std::views::transform(dereference)) {
        passedIt = passedIt || other.url == finding.url;
        if (PathRules::isInside(other.url.native(), finding.url.native()) &&
            other.url != finding.url) {
            bytes += other.allocatedBytes;
            ++count;
            allBelow = allBelow && passedIt;
        }
    }
    if (count == 0) {
        return "";
    }
    return " · " + SizeText::bytes(finding.allocatedBytes) + " here · " + SizeText::bytes(bytes) +
           " in " + counted(count, "folder", "folders") +
           (allBelow ? " listed below" : " listed separately");
}

std::string unreadableEntryLines(const StorageFinding& finding, const std::filesystem::path& home) {
    std::string text;
    const std::size_t shown = std::min(finding.unreadableEntries.size(), unreadableShown);
    for (std::size_t index = 0; index < shown; ++index) {
        const auto& entry = finding.unreadableEntries[index];
        text += std::string(17, ' ') + "Not read: " + displayPath(entry.path, home) + " — " +
                TerminalText::escaped(entry.reason) + "\n";
    }
    const auto more = finding.skippedCount - static_cast<std::int64_t>(shown);
    if (shown > 0 && more > 0) {
        text += std::string(17, ' ') + "and " + CountText::grouped(more) + " more\n";
    }
    return text;
}

std::string findingLines(const StorageFinding& finding,
                         const std::vector<const StorageFinding*>& listed,
                         const std::filesystem::path& home) {
    std::string line = "      " + padded(SizeText::bytes(finding.allocatedBytes), 9) + "  " +
                       displayPath(finding.url, home) + nestedText(finding, listed);
    if (finding.limited) {
        line += " · measured in part: entry limit reached";
    }
    if (finding.skippedCount > 0) {
        line += " · " + counted(finding.skippedCount, "entry", "entries") + " could not be read";
    }
    const auto guidance = StorageGuidance::forCategory(finding.location.category);
    return line + "\n" + std::string(17, ' ') + TerminalText::escaped(finding.location.category) +
           " · " + guidance.summary() + "\n" + unreadableEntryLines(finding, home);
}

// What a default review ('review --all', without recent files) of the tool takes file by
// file, said as the review says it, so that the two agree.
std::string cleanableLine(const StorageTool& tool) {
    std::set<std::string> ids;
    std::int64_t recentBytes = 0;
    for (const auto& finding : tool.findings) {
        if (StorageRemovalPlan::usesEligibleFiles(finding)) {
            ids.insert(finding.id());
            recentBytes += finding.recentCleanupBytes;
        }
    }
    const auto plan = StorageRemovalPlan::make(tool, ids, false);
    const ReviewReach reach = reachOf(tool.findings, plan.files, false);
    std::string text;
    if (reach.eligibleFiles > 0) {
        text =
            "  " + SizeText::bytes(reach.eligibleBytes) +
            " of cache and log files can be cleaned file by file" +
            (reach.takesEverything() ? " (" + counted(reach.eligibleFiles, "file", "files") + ")."
                                     : "; one review takes " + reach.partText() + ".");
    }
    if (recentBytes > reach.eligibleBytes) {
        text += (text.empty() ? "  Recent cache and log files: " : " Recent files add ") +
                SizeText::bytes(recentBytes - reach.eligibleBytes) + " with --include-recent.";
    }
    return text.empty() ? text : text + "\n";
}

// The tool's visible folders, in sections by guidance group.
std::string toolSection(const StorageTool& tool, const std::filesystem::path& home) {
    std::string text =
        TerminalText::escaped(tool.owner) + "  " + SizeText::bytes(tool.allocatedBytes()) + " · " +
        counted(tool.fileCount(), "file", "files") + (tool.incomplete() ? " · partial" : "") + "\n";
    // The visible ones in the order they are listed: by group, then as the tool holds them.
    // Pointed at, not copied: a finding holds up to a thousand files.
    std::vector<const StorageFinding*> listed;
    for (const auto group : StorageGuidanceGroup::allCases) {
        for (const auto& finding : tool.findings) {
            if (StorageTool::isVisible(finding) &&
                StorageGuidance::forCategory(finding.location.category).group == group) {
                listed.push_back(&finding);
            }
        }
    }
    for (const auto group : StorageGuidanceGroup::allCases) {
        std::string lines;
        for (const StorageFinding& finding : listed | std::views::transform(dereference)) {
            if (StorageGuidance::forCategory(finding.location.category).group == group) {
                lines += findingLines(finding, listed, home);
            }
        }
        if (!lines.empty()) {
            text += "  " + std::string(StorageGuidanceGroup::title(group)) + "\n" + lines;
        }
    }
    return text + cleanableLine(tool) + "\n";
}

// Each unreadable folder and why; a summary read back knows only how many there were.
std::string unreadableLines(const StorageScan& scan, const std::filesystem::path& home) {
    std::string text =
        " · " + counted(scan.unreadableLocations, "location", "locations") + " could not be read";
    if (scan.unreadableFolders.empty()) {
        return text + "\n";
    }
    text += ":\n";
    for (const auto& folder : scan.unreadableFolders) {
        text += "  " + displayPath(folder.path, home) + " — " +
                TerminalText::escaped(folder.reason) + "\n";
    }
    return text;
}

std::string totals(const StorageScan& scan, const std::filesystem::path& home, std::int64_t tools) {
    std::string text =
        "Total: " + SizeText::bytes(scan.allocatedBytes()) + " across " +
        counted(tools, "tool", "tools") + " in " +
        counted(static_cast<std::int64_t>(scan.findings.size()), "folder", "folders") + "\n" +
        counted(scan.absentLocations, "location", "locations") + " not present";
    text += scan.unreadableLocations > 0 ? unreadableLines(scan, home) : "\n";
    if (scan.incomplete()) {
        text += "This is a partial scan: some folders could not be measured completely.\n";
    }
    return text;
}

}  // namespace

std::string displayPath(const std::filesystem::path& path, const std::filesystem::path& home) {
    const std::string& text = path.native();
    if (text == home.native()) {
        return "~";
    }
    if (PathRules::isInside(text, home.native())) {
        const std::size_t start = home.native() == "/" ? 1 : home.native().size() + 1;
        return "~/" + TerminalText::escaped(text.substr(start));
    }
    return TerminalText::escaped(text);
}

std::string scanReport(StorageScan scan, const std::filesystem::path& home) {
    std::string report = "AI storage in " + TerminalText::escaped(home.native()) + "\n\n";
    std::int64_t shown = 0;
    // The tools take the findings over, so that a big scan's lists of files are not held twice;
    // the totals, which only add them up, get them back.
    std::vector<StorageTool> tools = StorageTool::group(std::exchange(scan.findings, {}));
    for (auto& tool : tools) {
        if (tool.allocatedBytes() > 0) {
            report += toolSection(tool, home);
            ++shown;
        }
        std::ranges::move(tool.findings, std::back_inserter(scan.findings));
    }
    return report + totals(scan, home, shown);
}

}  // namespace tallowmere::cli
