#include "removal/LocationRemovalReview.h"

#include <uuid/uuid.h>

#include <algorithm>

#include "removal/FileCleanup.h"
#include "removal/StorageLocationTrash.h"
#include "removal/StorageRemovalPlan.h"

namespace tallowmere {

namespace {

constexpr std::int64_t reviewSnapshotLimit = 100000;

std::string newIdentifier() {
    uuid_t bytes;
    uuid_generate_random(bytes);
    char text[37];
    uuid_unparse_lower(bytes, text);
    return text;
}

std::string counted(std::size_t count, const char* noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

}  // namespace

std::int64_t LocationRemovalReview::allocatedBytes() const {
    std::int64_t total = 0;
    for (const auto& location : locations) {
        total += location.allocatedBytes;
    }
    for (const auto& file : files) {
        total += file.allocatedBytes;
    }
    return total;
}

std::string LocationRemovalReview::selectionSummary() const {
    std::vector<std::string> parts;
    if (!files.empty()) {
        parts.push_back(counted(files.size(), "cache/log file"));
    }
    if (!locations.empty()) {
        parts.push_back(counted(locations.size(), "whole folder"));
    }
    return parts.empty() ? "" : parts.size() == 1 ? parts[0] : parts[0] + " · " + parts[1];
}

std::optional<LocationRemovalReview> LocationRemovalReview::prepare(
    const std::vector<StorageTool>& tools, const std::string& owner,
    const std::set<std::string>& selectedIDs, bool includeRecent, const ScanOptions& options) {
    const auto tool = std::ranges::find(tools, owner, &StorageTool::owner);
    if (tool == tools.end()) {
        return std::nullopt;
    }
    const auto plan = StorageRemovalPlan::make(*tool, selectedIDs, includeRecent);
    if (plan.isEmpty()) {
        return std::nullopt;
    }
    LocationRemovalReview review{
        newIdentifier(), owner, {}, affectedToolsOf(tools, owner, plan.folders), plan.files};
    for (const auto& folder : plan.folders) {
        review.locations.push_back(
            StorageLocationTrash::snapshot(folder.url, folder.location.category,
                                           folder.location.detail, reviewSnapshotLimit, options));
    }
    return review;
}

StorageCleanupResult removeReviewed(const LocationRemovalReview& review,
                                    StorageRemovalMethod method, const ScanOptions& options) {
    StorageCleanupResult result = StorageLocationTrash::remove(review.locations, method, options);
    const StorageCleanupResult files = AIStorageCleanup::remove(review.files, method);
    result.moved += files.moved;
    result.items.insert(result.items.end(), files.items.begin(), files.items.end());
    result.errors.insert(result.errors.end(), files.errors.begin(), files.errors.end());
    return result;
}

std::vector<std::string> affectedToolsOf(const std::vector<StorageTool>& tools,
                                         const std::string& owner,
                                         const std::vector<StorageFinding>& folders) {
    std::vector<std::string> affected;
    for (const auto& tool : tools) {
        const bool inside =
            tool.owner != owner && std::ranges::any_of(tool.findings, [&](const auto& finding) {
                return std::ranges::any_of(folders, [&](const StorageFinding& folder) {
                    return finding.url.native().starts_with(folder.url.native() + "/");
                });
            });
        if (inside) {
            affected.push_back(tool.owner);
        }
    }
    std::ranges::sort(affected);
    affected.erase(std::unique(affected.begin(), affected.end()), affected.end());
    return affected;
}

}  // namespace tallowmere
