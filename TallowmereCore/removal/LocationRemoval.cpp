#include <set>
#include <stdexcept>

#include "platform/Deletion.h"
#include "platform/Mounts.h"
#include "platform/PathRules.h"
#include "removal/CheckedDeletion.h"
#include "removal/FolderCheck.h"
#include "removal/ItemInHand.h"
#include "removal/RemovalErrors.h"
#include "removal/StorageLocationTrash.h"

namespace tallowmere::StorageLocationTrash {

namespace {

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

// Takes the reviewed folder from its place and checks the taken object against the review;
// anything else goes back. Answers the folder's records, which say what may be deleted.
FolderRecords takeChecked(ItemInHand& item, const StorageLocationSnapshot& reviewed,
                          StorageRemovalMethod method, const RemovalOptions& options) {
    const EntryStatus& found = item.statusAtPlace();
    if (found.kind != EntryKind::directory || found.identity.text() != reviewed.fileIdentity) {
        throw FileTrashError();
    }
    if (!sameMount(found, item.folderStatus())) {
        throw ReviewError(ReviewError::Kind::broadLocation);  // a mount point
    }
    options.step(RemovalOptions::Step::found, reviewed.url);
    item.take(method);
    try {
        options.step(RemovalOptions::Step::taken, reviewed.url);
        auto records =
            checkedFolder(item.heldFolderFd(), item.heldName(), reviewed, options.checkOptions());
        options.step(RemovalOptions::Step::checked, reviewed.url);
        return records;
    } catch (const std::exception& error) {
        throw std::runtime_error(error.what() + item.putBack());
    }
}

// Deletes what the check recorded and nothing else; what is left goes back to its place.
void deleteChecked(ItemInHand& item, const StorageLocationSnapshot& reviewed,
                   const FolderRecords& records) {
    RecordedItems recorded(records);
    const auto removable = [&recorded](std::string_view path, const EntryStatus& status) {
        return recorded.accept(path, status);
    };
    std::size_t kept = 0;
    try {
        const EntryStatus held = item.heldStatus();
        if (held.identity.text() != reviewed.fileIdentity) {
            throw FileTrashError();
        }
        kept = Deletion::removeFolderAt(item.heldFolderFd(), item.heldName(), held, removable);
    } catch (const std::exception& error) {
        throw std::runtime_error(error.what() + item.putBack());
    }
    if (kept > 0) {
        throw std::runtime_error(keptText(kept) + item.putBack());
    }
}

void removeOne(const StorageLocationSnapshot& reviewed, StorageRemovalMethod method,
               const RemovalOptions& options, StorageCleanupResult& result) {
    ItemInHand item = ItemInHand::at(PathRules::standardized(reviewed.url));
    const FolderRecords records = takeChecked(item, reviewed, method, options);
    if (method == StorageRemovalMethod::permanent) {
        deleteChecked(item, reviewed, records);
        ++result.moved;
        return;
    }
    FileEntry original;
    original.url = reviewed.url;
    original.bytes = 0;
    original.modified = reviewed.modified;
    original.fileIdentity = FileIdentity::parse(reviewed.fileIdentity);
    ++result.moved;
    result.items.push_back({std::move(original), item.trashLocation(), reviewed});
    if (options.onTrashed) {
        options.onTrashed(result.items.back());
    }
}

}  // namespace

StorageCleanupResult remove(const std::vector<StorageLocationSnapshot>& snapshots,
                            StorageRemovalMethod method, const RemovalOptions& options) {
    const auto outermostSet = outermostPaths(snapshots);
    StorageCleanupResult result;
    std::set<std::string> handled;
    for (const auto& reviewed : snapshots) {
        if (options.stopToken.stop_requested()) {
            break;
        }
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
                                 const RemovalOptions& options) {
    return remove(snapshots, StorageRemovalMethod::trash, options);
}

}  // namespace tallowmere::StorageLocationTrash
