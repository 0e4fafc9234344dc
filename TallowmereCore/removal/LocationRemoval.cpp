#include <set>

#include "platform/Deletion.h"
#include "platform/FileSystemError.h"
#include "platform/PathRules.h"
#include "platform/Trash.h"
#include "removal/FileCleanup.h"
#include "removal/RemovalErrors.h"
#include "removal/StorageLocationTrash.h"

namespace tallowmere::StorageLocationTrash {

namespace {

constexpr std::int64_t removalSnapshotLimit = 100000;

std::set<std::string> outermostPaths(const std::vector<StorageLocationSnapshot>& snapshots) {
    std::vector<std::filesystem::path> folders;
    for (const auto& snapshot : snapshots) {
        folders.push_back(snapshot.url);
    }
    std::set<std::string> paths;
    for (const auto& folder : outermost(folders)) {
        paths.insert(folder.native());
    }
    return paths;
}

void removeOne(const StorageLocationSnapshot& reviewed, StorageRemovalMethod method,
               const ScanOptions& options, StorageCleanupResult& result) {
    const auto fresh =
        snapshot(reviewed.url, reviewed.category, reviewed.detail, removalSnapshotLimit, options);
    if (fresh.fingerprint != reviewed.fingerprint) {
        throw FileTrashError();
    }
    if (method == StorageRemovalMethod::permanent) {
        Deletion::removeFolder(reviewed.url);
        ++result.moved;
        return;
    }
    const auto identity = FileIdentity::parse(fresh.fileIdentity);
    if (!identity) {
        throw ReviewError(ReviewError::Kind::unavailable);
    }
    const auto trashed = Trash::moveToTrash(reviewed.url, *identity);
    ++result.moved;
    result.items.push_back(
        {{reviewed.url, 0, reviewed.modified, reviewed.fileIdentity}, trashed.location, reviewed});
    if (!trashed.identityMatches) {
        result.errors.push_back(PathRules::lastComponent(reviewed.url) + ": " +
                                AIStorageCleanup::changedInTrashDescription);
    }
}

}  // namespace

StorageCleanupResult remove(const std::vector<StorageLocationSnapshot>& snapshots,
                            StorageRemovalMethod method, const ScanOptions& options) {
    const auto outermostSet = outermostPaths(snapshots);
    StorageCleanupResult result;
    std::set<std::string> handled;
    for (const auto& reviewed : snapshots) {
        if (!outermostSet.contains(reviewed.url.native()) ||
            !handled.insert(reviewed.url.native()).second) {
            continue;
        }
        try {
            removeOne(reviewed, method, options, result);
        } catch (const std::exception& error) {
            result.errors.push_back(PathRules::lastComponent(reviewed.url) + ": " + error.what());
        }
    }
    return result;
}

StorageCleanupResult moveToTrash(const std::vector<StorageLocationSnapshot>& snapshots,
                                 const ScanOptions& options) {
    return remove(snapshots, StorageRemovalMethod::trash, options);
}

}  // namespace tallowmere::StorageLocationTrash
