#include "removal/FileCleanup.h"

#include <cerrno>
#include <set>
#include <stdexcept>

#include "platform/EntryStatus.h"
#include "platform/FileSystemError.h"
#include "platform/FolderDescriptors.h"
#include "platform/PathRules.h"
#include "platform/Renaming.h"
#include "platform/Trash.h"
#include "removal/AIStorageCleanup.h"
#include "removal/FileTrash.h"
#include "removal/FolderCheck.h"
#include "removal/ItemInHand.h"
#include "removal/RemovalErrors.h"
#include "removal/RemovalScope.h"
#include "removal/TrashedItems.h"

namespace tallowmere::AIStorageCleanup {

namespace {

std::string errorText(const std::filesystem::path& item, const std::exception& error) {
    return PathRules::lastComponent(item) + ": " + error.what();
}

// Throws FileTrashError unless the file still lies in its location and is still eligible now.
// (A link on the way is refused when the file's folder is opened.)
void checkStillEligible(const StorageCleanupFile& file, const std::filesystem::path& path) {
    const auto root = PathRules::standardized(file.root);
    if (!PathRules::isInside(path.native(), root.native()) ||
        !eligible(path, file.entry.modified, std::string(nameOf(file.category)), currentDate(),
                  file.includesRecent)) {
        throw FileTrashError();
    }
}

void removeOne(const StorageCleanupFile& file, StorageRemovalMethod method,
               const RemovalOptions& options, StorageCleanupResult& result) {
    const auto path = PathRules::standardized(file.entry.url);
    checkStillEligible(file, path);
    ItemInHand item = ItemInHand::at(path);
    FileTrash::validate(file.entry, item.statusAtPlace(), file.statusChanged);
    options.step(RemovalOptions::Step::found, path);
    item.take(method);
    try {
        options.step(RemovalOptions::Step::taken, path);
        // Taking it moved its change time; the identity ties it to the file just validated.
        const EntryStatus held = item.heldStatus();
        FileTrash::validate(file.entry, held);
        if (held.identity != item.statusAtPlace().identity) {
            throw FileTrashError();
        }
        options.step(RemovalOptions::Step::checked, path);
        if (method == StorageRemovalMethod::permanent) {
            item.deleteFile();
        }
    } catch (const std::exception& error) {
        throw std::runtime_error(error.what() + item.putBack());
    }
    ++result.moved;
    if (method == StorageRemovalMethod::trash) {
        result.items.push_back({file.entry, item.trashLocation(), std::nullopt});
        if (options.onTrashed) {
            options.onTrashed(result.items.back());
        }
    }
}

// The folder of the former place, opened without links: one reached through a link counts as
// taken, like a place where something stands.
FileDescriptor openFormerFolder(const std::filesystem::path& folder) {
    try {
        return openFolderWithoutLinks(folder);
    } catch (const FileSystemError& error) {
        if (error.code() == ELOOP) {
            throw FileSystemError::fromErrno(EEXIST);
        }
        if (error.code() == ENOENT) {
            throw FileSystemError(ENOENT, "The folder it was in no longer exists.");
        }
        throw;
    }
}

// Checks the item where it lies in the Trash; answers its identity.
FileIdentity checkedInTrash(const TrashedStorageFile& item, const Trash::TrashedItem& trashed,
                            const RemovalOptions& options) {
    if (const auto& reviewed = item.locationSnapshot) {
        StorageLocationTrash::checkedFolder(trashed.folderFd(), trashed.name, *reviewed,
                                            options.checkOptions());
        return FileIdentity::parse(reviewed->fileIdentity).value_or(FileIdentity{});
    }
    const EntryStatus status = entryStatusAt(trashed.folderFd(), trashed.name.c_str());
    FileTrash::validate(item.original, status);
    return status.identity;
}

void restoreOne(const TrashedStorageFile& item, const RemovalOptions& options) {
    checkRecordedPaths(item);
    const std::filesystem::path target = item.original.url;
    const Trash::TrashedItem trashed = Trash::find(item.trashURL, target);
    const FileDescriptor folder = openFormerFolder(target.parent_path());
    const std::string name = target.filename();
    EntryStatus existing;
    if (readEntryStatus(folder.get(), name.c_str(), existing) || errno != ENOENT) {
        throw FileSystemError::fromErrno(EEXIST);
    }
    options.step(RemovalOptions::Step::found, target);
    const FileIdentity checked = checkedInTrash(item, trashed, options);
    options.step(RemovalOptions::Step::checked, target);
    Trash::moveOut(trashed, folder.get(), name);
    options.step(RemovalOptions::Step::taken, target);
    // What arrived must be what was checked; anything swapped in meanwhile goes back.
    if (entryStatusAt(folder.get(), name.c_str()).identity != checked) {
        if (!Renaming::moveWithoutReplacing(folder.get(), name.c_str(), trashed.folderFd(),
                                            trashed.name.c_str())) {
            throw std::runtime_error(std::string(FileTrashError().what()) +
                                     " Something else came back in its place and stays there.");
        }
        throw FileTrashError();
    }
    Trash::forget(trashed);
}

}  // namespace

StorageCleanupResult remove(const std::vector<StorageCleanupFile>& files,
                            StorageRemovalMethod method, const RemovalOptions& options) {
    StorageCleanupResult result;
    std::set<std::string> handled;
    for (const auto& file : files) {
        if (options.stopToken.stop_requested()) {
            break;
        }
        if (!handled.emplace(file.entry.url.native()).second) {
            continue;
        }
        try {
            removeOne(file, method, options, result);
        } catch (const std::exception& error) {
            result.errors.push_back(errorText(file.entry.url, error));
        }
    }
    return result;
}

StorageCleanupResult moveToTrash(const std::vector<StorageCleanupFile>& files,
                                 const RemovalOptions& options) {
    return remove(files, StorageRemovalMethod::trash, options);
}

StorageRestoreResult restore(const std::vector<TrashedStorageFile>& items,
                             const RemovalOptions& options) {
    StorageRestoreResult result;
    forEachTrashedItem(items, options, result.remaining, result.errors,
                       [&](const TrashedStorageFile& item) {
                           restoreOne(item, options);
                           ++result.restored;
                       });
    return result;
}

}  // namespace tallowmere::AIStorageCleanup
