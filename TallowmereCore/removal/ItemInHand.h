#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "platform/EntryStatus.h"
#include "platform/FileDescriptor.h"
#include "platform/Trash.h"
#include "removal/StorageRemovalMethod.h"

namespace tallowmere {

// A reviewed item taken from its place before it is checked: moved into the Trash, or, for
// deletion, renamed aside to a private name in its own folder. Whatever another process does
// at the old path from then on cannot reach it, so the object checked next is the object that
// is deleted or left in the Trash, never one looked up again by path. Move-only.
class ItemInHand {
public:
    // The item at `place` (absolute, standardized) as it is now, its folder opened without
    // links; nothing is moved yet. Throws FileTrashError when a link lies on the way,
    // FileSystemError when it cannot be read.
    static ItemInHand at(const std::filesystem::path& place);
    // The item `trashed` names as it is now, its folder the trash's files/ folder already
    // opened, not looked up again; it is only ever taken aside there, for deletion. Throws
    // FileSystemError when it cannot be read.
    static ItemInHand inTrash(const Trash::TrashedItem& trashed);

    const EntryStatus& statusAtPlace() const { return m_statusAtPlace; }
    const EntryStatus& folderStatus() const { return m_folderStatus; }

    // Takes the item: into the Trash, or aside for deletion. Throws FileSystemError when it
    // stays in place.
    void take(StorageRemovalMethod method);

    // Where the item is held now, for calls relative to a folder.
    int heldFolderFd() const;
    const std::string& heldName() const;
    // The status of what is held, read afresh. Throws FileSystemError.
    EntryStatus heldStatus() const;
    // Where it lies in the Trash, once taken there.
    std::filesystem::path trashLocation() const { return m_trashed ? m_trashed->location : ""; }

    // Puts a held item back at its place, replacing nothing: when something new stands there,
    // beside it under the private name. Answers the sentence that says so, or nothing when it
    // went back to its place. Never throws.
    std::string putBack() noexcept;

    // Deletes a held item that is not a folder. Throws FileSystemError.
    void deleteFile() const;

private:
    ItemInHand() = default;

    std::filesystem::path m_place;
    std::string m_name;
    FileDescriptor m_folder;
    EntryStatus m_folderStatus;
    EntryStatus m_statusAtPlace;
    std::string m_asideName;  // set when renamed aside
    std::optional<Trash::TrashedItem> m_trashed;
};

}  // namespace tallowmere
