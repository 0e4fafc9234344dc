#include "removal/ItemInHand.h"

#include <fcntl.h>

#include <cerrno>

#include "platform/Deletion.h"
#include "platform/FileSystemError.h"
#include "platform/FolderDescriptors.h"
#include "platform/Renaming.h"
#include "removal/RemovalErrors.h"

namespace tallowmere {

namespace {

std::string leftAside(const std::string& asideName) {
    return " Something new stands at its place, so it was put beside it as “" + asideName + "”.";
}

}  // namespace

ItemInHand ItemInHand::at(const std::filesystem::path& place) {
    ItemInHand item;
    item.m_place = place;
    item.m_name = place.filename();
    try {
        item.m_folder = openFolderWithoutLinks(place.parent_path());
    } catch (const FileSystemError& error) {
        if (error.code() == ELOOP) {
            throw FileTrashError();  // reached through a link: not the place that was reviewed
        }
        throw;
    }
    item.m_folderStatus = entryStatusAt(item.m_folder.get(), "");
    item.m_statusAtPlace = entryStatusAt(item.m_folder.get(), item.m_name.c_str());
    return item;
}

ItemInHand ItemInHand::inTrash(const Trash::TrashedItem& trashed) {
    ItemInHand item;
    item.m_place = trashed.location;
    item.m_name = trashed.name;
    item.m_folder = openFolderAt(trashed.folderFd(), ".", O_PATH);
    if (!item.m_folder.valid()) {
        throw FileSystemError::fromErrno(errno);
    }
    item.m_folderStatus = entryStatusAt(item.m_folder.get(), "");
    item.m_statusAtPlace = entryStatusAt(item.m_folder.get(), item.m_name.c_str());
    return item;
}

void ItemInHand::take(StorageRemovalMethod method) {
    if (method == StorageRemovalMethod::trash) {
        m_trashed = Trash::moveIn(m_folder.get(), m_place);
        return;
    }
    const std::string aside = Renaming::privateName();
    if (!Renaming::moveWithoutReplacing(m_folder.get(), m_name.c_str(), m_folder.get(),
                                        aside.c_str())) {
        throw Renaming::failure(errno);
    }
    m_asideName = aside;
}

int ItemInHand::heldFolderFd() const {
    return m_trashed ? m_trashed->folderFd() : m_folder.get();
}

const std::string& ItemInHand::heldName() const {
    return m_trashed ? m_trashed->name : m_asideName;
}

EntryStatus ItemInHand::heldStatus() const {
    return entryStatusAt(heldFolderFd(), heldName().c_str());
}

std::string ItemInHand::putBack() noexcept {
    try {
        if (m_trashed) {
            const std::string aside = Renaming::privateName();
            try {
                Trash::moveOut(*m_trashed, m_folder.get(), m_name);
            } catch (const FileSystemError& error) {
                if (error.code() != EEXIST) {
                    throw;
                }
                Trash::moveOut(*m_trashed, m_folder.get(), aside);
                Trash::forget(*m_trashed);
                return leftAside(aside);
            }
            Trash::forget(*m_trashed);
            return {};
        }
        if (Renaming::moveWithoutReplacing(m_folder.get(), m_asideName.c_str(), m_folder.get(),
                                           m_name.c_str())) {
            return {};
        }
        return leftAside(m_asideName);
    } catch (const std::exception& error) {
        return std::string(" It could not be put back: ") + error.what() +
               (m_trashed ? " It stays in the Trash."
                          : " It stays beside its place as “" + m_asideName + "”.");
    }
}

void ItemInHand::deleteFile() const {
    Deletion::removeFileAt(m_folder.get(), m_asideName);
}

}  // namespace tallowmere
