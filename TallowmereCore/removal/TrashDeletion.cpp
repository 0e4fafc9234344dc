#include "removal/TrashDeletion.h"

#include <stdexcept>
#include <string_view>

#include "platform/Deletion.h"
#include "platform/EntryStatus.h"
#include "platform/Mounts.h"
#include "platform/Trash.h"
#include "removal/CheckedDeletion.h"
#include "removal/FileTrash.h"
#include "removal/FolderCheck.h"
#include "removal/ItemInHand.h"
#include "removal/RemovalErrors.h"
#include "removal/TrashedItems.h"

namespace tallowmere::AIStorageCleanup {

namespace {

using Step = RemovalOptions::Step;

std::int64_t deleteHeldFile(const TrashedStorageFile& item, const ItemInHand& held,
                            const RemovalOptions& options) {
    const EntryStatus status = held.heldStatus();
    FileTrash::validate(item.original, status);
    options.step(Step::checked, item.trashURL);
    held.deleteFile();
    return releasedBytes(status);
}

// Deletes the items the check of the held folder recorded and nothing else.
std::int64_t deleteHeldFolder(const TrashedStorageFile& item, const ItemInHand& held,
                              const RemovalOptions& options) {
    const StorageLocationSnapshot& reviewed = *item.locationSnapshot;
    const FolderRecords records = StorageLocationTrash::checkedFolder(
        held.heldFolderFd(), held.heldName(), reviewed, options.checkOptions());
    const EntryStatus status = held.heldStatus();
    // Something mounted over it would be another folder that only looks the same.
    if (status.identity.text() != reviewed.fileIdentity ||
        !sameMount(status, held.folderStatus())) {
        throw FileTrashError();
    }
    options.step(Step::checked, item.trashURL);
    RecordedItems recorded(records);
    const std::size_t kept =
        Deletion::removeFolderAt(held.heldFolderFd(), held.heldName(), status,
                                 [&recorded](std::string_view path, const EntryStatus& found) {
                                     return recorded.accept(path, found);
                                 });
    if (kept > 0) {
        throw std::runtime_error(keptText(kept));
    }
    return recorded.released() + status.allocatedBytes;
}

void deleteOne(const TrashedStorageFile& item, const RemovalOptions& options,
               StorageTrashDeletionResult& result) {
    checkRecordedPaths(item);
    const Trash::TrashedItem trashed =
        Trash::find(item.trashURL, item.original.url, Trash::Purpose::deletion);
    ItemInHand held = ItemInHand::inTrash(trashed);
    options.step(Step::found, item.trashURL);
    // Aside under a private name, whatever is put at the trash name from now on stays out of
    // reach: the object checked is the object deleted.
    held.take(StorageRemovalMethod::permanent);
    std::int64_t released = 0;
    try {
        options.step(Step::taken, item.trashURL);
        released = item.locationSnapshot ? deleteHeldFolder(item, held, options)
                                         : deleteHeldFile(item, held, options);
    } catch (const std::exception& error) {
        throw std::runtime_error(error.what() + held.putBack());
    }
    Trash::forget(trashed);
    ++result.deleted;
    result.bytesFreed += released;
}

}  // namespace

StorageTrashDeletionResult deleteFromTrash(const std::vector<TrashedStorageFile>& items,
                                           const RemovalOptions& options) {
    StorageTrashDeletionResult result;
    forEachTrashedItem(items, options, result.remaining, result.errors,
                       [&](const TrashedStorageFile& item) { deleteOne(item, options, result); });
    return result;
}

}  // namespace tallowmere::AIStorageCleanup
