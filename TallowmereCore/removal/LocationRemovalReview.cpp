#include "removal/LocationRemovalReview.h"

#include <uuid/uuid.h>

#include <fcntl.h>

#include <algorithm>

#include "platform/EntryStatus.h"
#include "platform/PathRules.h"
#include "removal/FileCleanup.h"
#include "removal/FileTrash.h"
#include "removal/RemovalErrors.h"
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

void append(StorageCleanupResult& result, const StorageCleanupResult& more) {
    result.moved += more.moved;
    result.items.insert(result.items.end(), more.items.begin(), more.items.end());
    result.errors.insert(result.errors.end(), more.errors.begin(), more.errors.end());
}

// The file's status change time now, when it is still the file the scan recorded.
std::optional<Date> statusChangedOf(const StorageCleanupFile& file) {
    EntryStatus status;
    const std::filesystem::path path = file.entry.url;
    if (!readEntryStatus(AT_FDCWD, path.c_str(), status) || !status.hasStatusChanged) {
        return std::nullopt;
    }
    try {
        FileTrash::validate(file.entry, status);
    } catch (const FileTrashError&) {
        return std::nullopt;  // changed since the scan; the removal will find it so
    }
    return dateFromFileTime(status.statusChangedSeconds, status.statusChangedNanoseconds);
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
    for (auto& file : review.files) {
        file.statusChanged = statusChangedOf(file);
    }
    for (const auto& folder : plan.folders) {
        review.locations.push_back(
            StorageLocationTrash::snapshot(folder.url, folder.location.category,
                                           folder.location.detail, reviewSnapshotLimit, options));
    }
    return review;
}

StorageCleanupResult removeReviewed(const LocationRemovalReview& review,
                                    StorageRemovalMethod method, const RemovalScope& scope,
                                    const RemovalOptions& options) {
    StorageCleanupResult result;
    std::vector<StorageLocationSnapshot> folders;
    for (const auto& location : review.locations) {
        if (const auto refusal = scope.refusalOfFolder(location)) {
            result.errors.push_back(PathRules::lastComponent(location.url) + ": " + *refusal);
        } else {
            folders.push_back(location);
        }
    }
    append(result, StorageLocationTrash::remove(folders, method, options));
    std::vector<StorageCleanupFile> files;
    const Date now = currentDate();
    for (const auto& file : review.files) {
        if (const auto refusal = scope.refusalOfFile(file, now)) {
            result.errors.push_back(PathRules::lastComponent(file.entry.url) + ": " + *refusal);
        } else {
            files.push_back(file);
        }
    }
    append(result, AIStorageCleanup::remove(files, method, options));
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
