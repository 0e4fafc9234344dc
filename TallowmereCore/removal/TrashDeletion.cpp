#include "removal/TrashDeletion.h"

#include <cerrno>
#include <stdexcept>
#include <string_view>
#include <unordered_map>

#include "platform/Deletion.h"
#include "platform/EntryStatus.h"
#include "platform/FileIdentity.h"
#include "platform/FileSystemError.h"
#include "platform/Mounts.h"
#include "platform/PathRules.h"
#include "platform/Trash.h"
#include "removal/FileTrash.h"
#include "removal/FolderCheck.h"
#include "removal/ItemInHand.h"
#include "removal/RemovalErrors.h"
#include "removal/RemovalScope.h"

namespace tallowmere::AIStorageCleanup {

namespace {

using Step = RemovalOptions::Step;

// The space deleting the entry releases: a folder's own blocks, a file's only with its last
// name, since another name keeps them in use.
std::int64_t releasedBytes(const EntryStatus& status) {
    const bool last = status.kind == EntryKind::directory || status.linkCount == 1;
    return last ? status.allocatedBytes : 0;
}

std::string keptText(std::size_t kept) {
    return std::to_string(kept) + (kept == 1 ? " item was" : " items were") +
           " added or changed while it was being deleted, so they were kept with the folders "
           "that hold them.";
}

std::int64_t deleteHeldFile(const TrashedStorageFile& item, const ItemInHand& held,
                            const RemovalOptions& options) {
    const EntryStatus status = held.heldStatus();
    FileTrash::validate(item.original, status);
    options.step(Step::checked, item.trashURL);
    held.deleteFile();
    return releasedBytes(status);
}

// Which items the deletion walk may take: those the check recorded, exactly as recorded.
// Deleting one name of a file with several moves the file's change time, so its other names
// are matched with the change time it was checked with.
class RecordedItems {
public:
    explicit RecordedItems(const FolderRecords& records) : m_records(records) {}

    bool accept(std::string_view path, const EntryStatus& status) {
        EntryStatus asChecked = status;
        if (const auto first = m_linked.find(status.identity); first != m_linked.end()) {
            asChecked.statusChangedSeconds = first->second.statusChangedSeconds;
            asChecked.statusChangedNanoseconds = first->second.statusChangedNanoseconds;
        }
        if (!m_records.contains(path, asChecked)) {
            return false;
        }
        if (status.kind != EntryKind::directory && status.linkCount > 1) {
            m_linked.emplace(status.identity, status);
        }
        m_released += releasedBytes(status);
        return true;
    }

    std::int64_t released() const { return m_released; }

private:
    const FolderRecords& m_records;
    std::unordered_map<FileIdentity, EntryStatus, FileIdentityHash> m_linked;
    std::int64_t m_released = 0;
};

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
    if (!isStandardAbsolutePath(item.original.url) || !isStandardAbsolutePath(item.trashURL)) {
        throw FileSystemError(EINVAL,
                              "Its undo record names a path that is not absolute and "
                              "standardised, so it was not used.");
    }
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
    for (const auto& item : items) {
        if (options.stopToken.stop_requested()) {
            result.remaining.push_back(item);
            continue;
        }
        try {
            deleteOne(item, options, result);
        } catch (const Trash::NoLongerInTrash& gone) {
            // Nothing is left to delete, now or later.
            result.errors.push_back(PathRules::lastComponent(item.original.url) + ": " +
                                    gone.what());
        } catch (const std::exception& error) {
            result.remaining.push_back(item);
            result.errors.push_back(PathRules::lastComponent(item.original.url) + ": " +
                                    error.what());
        }
    }
    return result;
}

}  // namespace tallowmere::AIStorageCleanup
