#include "ScanReport.h"

#include <algorithm>
#include <cstdio>
#include <vector>

#include "platform/PathRules.h"
#include "text/SizeText.h"
#include "text/TerminalText.h"

namespace tallowmere::cli {

namespace {

struct OwnerGroup {
    std::string owner;
    std::int64_t allocatedBytes = 0;
    std::int64_t fileCount = 0;
    std::vector<const StorageFinding*> findings;
};

// Owners largest first; equal sizes keep the order of their first finding.
std::vector<OwnerGroup> groupByOwner(const StorageScan& scan) {
    std::vector<OwnerGroup> groups;
    for (const auto& finding : scan.findings) {
        auto group = std::ranges::find(groups, finding.location.owner, &OwnerGroup::owner);
        if (group == groups.end()) {
            group = groups.insert(groups.end(), OwnerGroup{finding.location.owner, 0, 0, {}});
        }
        group->allocatedBytes += finding.allocatedBytes;
        group->fileCount += finding.fileCount;
        group->findings.push_back(&finding);
    }
    std::ranges::stable_sort(groups, std::ranges::greater{}, &OwnerGroup::allocatedBytes);
    return groups;
}

std::string counted(std::int64_t count, const char* singular, const char* plural) {
    return std::to_string(count) + " " + (count == 1 ? singular : plural);
}

std::string padded(const std::string& text, std::size_t width) {
    return text.size() >= width ? text : std::string(width - text.size(), ' ') + text;
}

std::string findingLine(const StorageFinding& finding, const std::filesystem::path& home) {
    std::string line = "  " + padded(SizeText::bytes(finding.allocatedBytes), 9) + "  " +
                       displayPath(finding.url, home) + "  (" +
                       TerminalText::escaped(finding.location.category) + ")";
    if (finding.limited) {
        line += " · measured in part: entry limit reached";
    }
    if (finding.skippedCount > 0) {
        line += " · " + counted(finding.skippedCount, "entry", "entries") + " could not be read";
    }
    return line + "\n";
}

std::string totals(const StorageScan& scan, std::size_t owners) {
    std::string text =
        "Total: " + SizeText::bytes(scan.allocatedBytes()) + " in " +
        counted(static_cast<std::int64_t>(scan.findings.size()), "folder", "folders") + " of " +
        counted(static_cast<std::int64_t>(owners), "tool", "tools") + "\n";
    text += counted(scan.absentLocations, "location", "locations") + " not present";
    if (scan.unreadableLocations > 0) {
        text += " · " + counted(scan.unreadableLocations, "location", "locations") +
                " could not be read";
    }
    text += "\n";
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
    const auto groups = groupByOwner(scan);
    std::string report = "AI storage in " + TerminalText::escaped(home.native()) + "\n\n";
    for (const auto& group : groups) {
        report += TerminalText::escaped(group.owner) + "  " +
                  SizeText::bytes(group.allocatedBytes) + " · " +
                  counted(group.fileCount, "file", "files") + "\n";
        for (const StorageFinding* finding : group.findings) {
            report += findingLine(*finding, home);
        }
        report += "\n";
    }
    return report + totals(scan, groups.size());
}

}  // namespace tallowmere::cli
