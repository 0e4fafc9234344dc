#include "ReviewSheet.h"

#include <set>

#include "ScanReport.h"
#include "guidance/StorageCleanupGroup.h"
#include "guidance/StorageGuidance.h"
#include "text/SizeText.h"
#include "text/TerminalText.h"

namespace tallowmere::cli {

namespace {

std::string notice(const LocationRemovalReview& review) {
    const std::string owner = TerminalText::escaped(review.owner);
    if (review.locations.empty()) {
        return "Only eligible cache/log files. Quit " + owner +
               " first; changed files are skipped.\n";
    }
    std::string text = "Whole folders include saved data, settings and any nested files. Quit " +
                       owner + " before removing them.\n";
    if (!review.affectedTools.empty()) {
        std::string owners;
        for (const auto& affected : review.affectedTools) {
            owners += (owners.empty() ? "" : ", ") + TerminalText::escaped(affected);
        }
        text += "Also includes storage belonging to: " + owners + ".\n";
    }
    return text;
}

std::string fileGroup(const StorageCleanupGroup& group, const std::filesystem::path& home) {
    const bool cache = group.kind == StorageCleanupGroup::Kind::cache;
    const auto count = group.files.size();
    std::string text =
        std::string(cache ? "Rebuildable cache" : "Diagnostic logs") + " — " +
        SizeText::bytes(group.allocatedBytes()) + "\n  " + std::to_string(count) +
        (count == 1 ? " file" : " files") + " · " +
        (cache ? "May rebuild or download again" : "Removes troubleshooting records") + "\n";
    std::set<std::string> roots;
    for (const auto& file : group.files) {
        roots.emplace(file.root.native());
    }
    for (const auto& root : roots) {
        text += "  in " + displayPath(root, home) + "\n";
    }
    return text;
}

std::string folderCard(const StorageLocationSnapshot& folder, const std::filesystem::path& home) {
    return TerminalText::escaped(folder.category) + " — " + SizeText::bytes(folder.allocatedBytes) +
           "\n  " + displayPath(folder.url, home) + "\n  " +
           StorageGuidance::forCategory(folder.category).summary() + "\n  " +
           std::to_string(folder.itemCount) + " items inside · includes all nested folders\n";
}

}  // namespace

std::string reviewSheet(const LocationRemovalReview& review, const ReviewReach& reach,
                        const std::filesystem::path& home) {
    std::string text = "Review selected items: " + TerminalText::escaped(review.owner) + "\n" +
                       review.selectionSummary() + "\n" +
                       (reach.takesEverything() ? "" : reach.partText() + "\n") + "\n" +
                       notice(review) + "\n";
    for (const auto& group : StorageCleanupGroup::group(review.files)) {
        text += fileGroup(group, home) + "\n";
    }
    for (const auto& folder : review.locations) {
        text += folderCard(folder, home) + "\n";
    }
    return text + SizeText::bytes(review.allocatedBytes()) + " on disk\n";
}

std::string permanentConfirmation(const LocationRemovalReview& review) {
    return review.selectionSummary() + " from " + TerminalText::escaped(review.owner) + " (" +
           SizeText::bytes(review.allocatedBytes()) +
           ") will be deleted without going to Trash. Whole folders include all their contents. "
           "This "
           "cannot be undone.";
}

}  // namespace tallowmere::cli
