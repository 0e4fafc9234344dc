#include "removal/StorageRemovalPlan.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <unordered_set>

#include "platform/PathRules.h"
#include "removal/StorageLocationTrash.h"

namespace tallowmere {

namespace {

// Files per review, across all the tool's selected cache and log locations together.
constexpr std::size_t maximumFiles = 500;

std::vector<StorageFinding> selectedFindings(const StorageTool& tool,
                                             const std::set<std::string>& selectedIDs,
                                             bool includeRecent) {
    std::vector<StorageFinding> selected;
    for (const auto& finding : tool.findings) {
        if (selectedIDs.contains(finding.id()) &&
            StorageRemovalPlan::canSelect(finding, includeRecent)) {
            selected.push_back(finding);
        }
    }
    return selected;
}

// The selected ordinary locations that no other one contains, in their own order.
std::vector<StorageFinding> outermostFolders(const std::vector<StorageFinding>& selected) {
    std::vector<StorageFinding> candidates;
    std::vector<std::filesystem::path> urls;
    for (const auto& finding : selected) {
        if (!StorageRemovalPlan::usesEligibleFiles(finding)) {
            candidates.push_back(finding);
            urls.push_back(finding.url);
        }
    }
    std::unordered_set<std::string> outermost;
    for (const auto& url : StorageLocationTrash::outermost(urls)) {
        outermost.insert(url.native());
    }
    std::erase_if(candidates, [&outermost](const StorageFinding& finding) {
        return !outermost.contains(PathRules::standardized(finding.url).native());
    });
    return candidates;
}

bool insideAnyFolder(const StorageCleanupFile& file, const std::vector<StorageFinding>& folders) {
    const std::string path = PathRules::standardized(file.entry.url).native();
    return std::ranges::any_of(folders, [&path](const StorageFinding& folder) {
        return PathRules::isInside(path, PathRules::standardized(folder.url).native());
    });
}

// The candidates of the selected cache and log locations outside `folders`, first listing of
// each path kept, then the largest few.
std::vector<StorageCleanupFile> plannedFiles(const std::vector<StorageFinding>& selected,
                                             const std::vector<StorageFinding>& folders,
                                             bool includeRecent) {
    std::vector<StorageCleanupFile> files;
    std::unordered_set<std::string> taken;
    for (const auto& finding : selected) {
        if (!StorageRemovalPlan::usesEligibleFiles(finding)) {
            continue;
        }
        for (const auto& file : StorageRemovalPlan::candidates(finding, includeRecent)) {
            if (!insideAnyFolder(file, folders) && taken.insert(file.id()).second) {
                files.push_back(file);
            }
        }
    }
    std::ranges::stable_sort(files, std::ranges::greater{}, &StorageCleanupFile::allocatedBytes);
    if (files.size() > maximumFiles) {
        files.resize(maximumFiles);
    }
    return files;
}

}  // namespace

bool StorageRemovalPlan::isEmpty() const {
    return folders.empty() && files.empty();
}

bool StorageRemovalPlan::usesEligibleFiles(const StorageFinding& finding) {
    const std::string& category = finding.location.category;
    return category == "Cache" || category == "Logs";
}

std::vector<StorageCleanupFile> StorageRemovalPlan::candidates(const StorageFinding& finding,
                                                               bool includeRecent) {
    return includeRecent ? finding.recentCleanupFiles : finding.cleanupFiles;
}

bool StorageRemovalPlan::canSelect(const StorageFinding& finding, bool includeRecent) {
    if (!usesEligibleFiles(finding)) {
        return true;
    }
    return !(includeRecent ? finding.recentCleanupFiles : finding.cleanupFiles).empty();
}

StorageRemovalPlan StorageRemovalPlan::make(const StorageTool& tool,
                                            const std::set<std::string>& selectedIDs,
                                            bool includeRecent) {
    const std::vector<StorageFinding> selected = selectedFindings(tool, selectedIDs, includeRecent);
    std::vector<StorageFinding> folders = outermostFolders(selected);
    std::vector<StorageCleanupFile> files = plannedFiles(selected, folders, includeRecent);
    return {std::move(folders), std::move(files)};
}

}  // namespace tallowmere
