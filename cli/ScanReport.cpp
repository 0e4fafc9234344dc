#include "ScanReport.h"

#include <algorithm>

#include "guidance/StorageGuidance.h"
#include "measurement/StorageTool.h"
#include "platform/PathRules.h"
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

std::string findingLines(const StorageFinding& finding, const std::filesystem::path& home) {
    std::string line = "      " + padded(SizeText::bytes(finding.allocatedBytes), 9) + "  " +
                       displayPath(finding.url, home);
    if (finding.limited) {
        line += " · measured in part: entry limit reached";
    }
    if (finding.skippedCount > 0) {
        line += " · " + counted(finding.skippedCount, "entry", "entries") + " could not be read";
    }
    const auto guidance = StorageGuidance::forCategory(finding.location.category);
    return line + "\n" + std::string(17, ' ') + TerminalText::escaped(finding.location.category) +
           " · " + guidance.summary() + "\n";
}

// The tool's visible folders, in sections by guidance group.
std::string toolSection(const StorageTool& tool, const std::filesystem::path& home) {
    std::string text =
        TerminalText::escaped(tool.owner) + "  " + SizeText::bytes(tool.allocatedBytes()) + " · " +
        counted(tool.fileCount(), "file", "files") + (tool.incomplete() ? " · partial" : "") + "\n";
    const auto visible = tool.visibleFindings();
    for (const auto group : StorageGuidanceGroup::allCases) {
        std::string lines;
        for (const auto& finding : visible) {
            if (StorageGuidance::forCategory(finding.location.category).group == group) {
                lines += findingLines(finding, home);
            }
        }
        if (!lines.empty()) {
            text += "  " + std::string(StorageGuidanceGroup::title(group)) + "\n" + lines;
        }
    }
    if (tool.reviewBytes() > 0) {
        text += "  " + SizeText::bytes(tool.reviewBytes()) +
                " of cache and log files can be cleaned file by file.\n";
    }
    return text + "\n";
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

std::string scanReport(const StorageScan& scan, const std::filesystem::path& home) {
    std::string report = "AI storage in " + TerminalText::escaped(home.native()) + "\n\n";
    std::int64_t shown = 0;
    for (const auto& tool : StorageTool::group(scan.findings)) {
        if (tool.allocatedBytes() > 0) {
            report += toolSection(tool, home);
            ++shown;
        }
    }
    return report + totals(scan, home, shown);
}

}  // namespace tallowmere::cli
