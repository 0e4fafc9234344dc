#include "platform/TrashFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <stdexcept>
#include <string>

#include "platform/FileSystemError.h"
#include "platform/FolderDescriptors.h"
#include "platform/Mounts.h"
#include "platform/PathRules.h"
#include "platform/UserFolders.h"

namespace tallowmere {

namespace {

[[noreturn]] void failNoUsableTrash(int code, const std::filesystem::path& trash) {
    if (code == EPERM) {
        throw FileSystemError(code, "The trash " + trash.native() +
                                        " belongs to another user or others may change it, so "
                                        "nothing was moved there.");
    }
    throw FileSystemError(code, "No usable trash was found for this item’s file system.");
}

// Nothing when no home folder is known; items can then only go to the trash of their mount.
std::optional<std::filesystem::path> dataHome() {
    try {
        // The user's own data folder may be reached through a link; the trash in it never is.
        return PathRules::resolvingSymlinks(UserFolders::dataFolder());
    } catch (const std::runtime_error&) {
        return std::nullopt;
    }
}

// The status of `path`, or else of its nearest ancestor that exists: a trash not created yet
// will lie on that one's mount.
std::optional<EntryStatus> statusOfNearestExisting(std::filesystem::path path) {
    EntryStatus status;
    while (!readEntryStatus(AT_FDCWD, path.c_str(), status)) {
        if (errno != ENOENT || !path.has_relative_path()) {
            return std::nullopt;
        }
        path = path.parent_path();
    }
    return status;
}

FileDescriptor openOrCreateFolder(int parentFd, const char* name, int flags) {
    FileDescriptor folder = openFolderAt(parentFd, name, flags);
    if (folder.valid() || errno != ENOENT) {
        return folder;
    }
    if (::mkdirat(parentFd, name, 0700) != 0 && errno != EEXIST) {
        return {};
    }
    return openFolderAt(parentFd, name, flags);
}

FileDescriptor openCreatingMissing(const std::filesystem::path& folder) {
    FileDescriptor current(::open("/", O_PATH | O_DIRECTORY | O_CLOEXEC));
    for (const auto& component : folder.relative_path()) {
        if (!current.valid()) {
            break;
        }
        current = openOrCreateFolder(current.get(), component.c_str(), O_PATH);
    }
    return current;
}

// Sets errno to EPERM when the folder belongs to someone else or others may write in it: they
// could read, replace or plant what is trashed there.
bool privateToUser(int folderFd) {
    struct stat status;
    if (::fstat(folderFd, &status) != 0) {
        return false;
    }
    const bool ownPrivate =
        status.st_uid == ::getuid() && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
    errno = ownPrivate ? 0 : EPERM;
    return ownPrivate;
}

enum class Missing { create, refuse };

FileDescriptor openPart(int parentFd, const char* name, int flags, Missing missing) {
    return missing == Missing::create ? openOrCreateFolder(parentFd, name, flags)
                                      : openFolderAt(parentFd, name, flags);
}

// Fills in files/ and info/ of an opened trash, checking it and them; false with errno set when
// one is unusable.
bool openParts(int trashFd, TrashFolder& trash, Missing missing) {
    if (!privateToUser(trashFd)) {
        return false;
    }
    trash.files = openPart(trashFd, "files", O_PATH, missing);
    if (!trash.files.valid() || !privateToUser(trash.files.get())) {
        return false;
    }
    trash.info = openPart(trashFd, "info", O_RDONLY, missing);
    return trash.info.valid() && privateToUser(trash.info.get());
}

TrashFolder homeTrash(const std::filesystem::path& home) {
    const FileDescriptor data = openCreatingMissing(home);
    const FileDescriptor trashFd =
        data.valid() ? openOrCreateFolder(data.get(), "Trash", O_PATH) : FileDescriptor();
    TrashFolder trash{home / "Trash", {}, {}, {}};
    if (!trashFd.valid() || !openParts(trashFd.get(), trash, Missing::create)) {
        failNoUsableTrash(errno, trash.location);
    }
    return trash;
}

// $topdir/.Trash/$uid, inside a .Trash folder an administrator made for everyone: it must be
// a real folder with the sticky bit, so that users cannot remove each other's trash.
std::optional<TrashFolder> sharedTopTrash(int topFd, const std::filesystem::path& top) {
    const FileDescriptor shared = openFolderAt(topFd, ".Trash", O_PATH);
    struct stat status;
    if (!shared.valid() || ::fstat(shared.get(), &status) != 0 || (status.st_mode & S_ISVTX) == 0) {
        return std::nullopt;
    }
    const std::string user = std::to_string(::getuid());
    const FileDescriptor own = openOrCreateFolder(shared.get(), user.c_str(), O_PATH);
    TrashFolder trash{top / ".Trash" / user, top, {}, {}};
    if (!own.valid() || !openParts(own.get(), trash, Missing::create)) {
        return std::nullopt;
    }
    return trash;
}

// $topdir/.Trash-$uid, the user's own trash on that mount.
TrashFolder ownTopTrash(int topFd, const std::filesystem::path& top) {
    const std::string name = ".Trash-" + std::to_string(::getuid());
    const FileDescriptor own = openOrCreateFolder(topFd, name.c_str(), O_PATH);
    TrashFolder trash{top / name, top, {}, {}};
    if (!own.valid() || !openParts(own.get(), trash, Missing::create)) {
        failNoUsableTrash(errno, trash.location);
    }
    return trash;
}

TrashFolder topTrash(const std::filesystem::path& folder, const EntryStatus& folderStatus) {
    const auto top = mountPointOf(folder, folderStatus);
    const FileDescriptor topFd = openFolderWithoutLinks(top);
    EntryStatus topStatus;
    if (!readEntryStatus(topFd.get(), "", topStatus)) {
        failNoUsableTrash(errno, top);
    }
    if (!sameMount(topStatus, folderStatus)) {
        failNoUsableTrash(EXDEV, top);  // the mounts changed while the top was looked for
    }
    if (auto shared = sharedTopTrash(topFd.get(), top)) {
        return std::move(*shared);
    }
    return ownTopTrash(topFd.get(), top);
}

}  // namespace

TrashFolder trashFolderFor(const std::filesystem::path& folder, const EntryStatus& folderStatus) {
    const auto home = dataHome();
    const auto homeTrashStatus = home ? statusOfNearestExisting(*home / "Trash") : std::nullopt;
    if (homeTrashStatus && sameMount(*homeTrashStatus, folderStatus)) {
        return homeTrash(*home);
    }
    return topTrash(folder, folderStatus);
}

namespace {

// The trash at `location` when it is this user's own: the home trash, or one at the top of
// a mount in either of the freedesktop.org forms.
std::optional<TrashFolder> openExisting(const std::filesystem::path& location,
                                        const std::filesystem::path& top) {
    FileDescriptor trashFd;
    try {
        trashFd = openFolderWithoutLinks(location);
    } catch (const FileSystemError&) {
        return std::nullopt;
    }
    TrashFolder trash{location, top, {}, {}};
    if (!openParts(trashFd.get(), trash, Missing::refuse)) {
        return std::nullopt;
    }
    return trash;
}

bool isMountTop(const std::filesystem::path& folder) {
    EntryStatus status;
    return readEntryStatus(AT_FDCWD, folder.c_str(), status) &&
           mountPointOf(folder, status) == folder;
}

}  // namespace

std::optional<TrashFolder> existingTrashFolder(const std::filesystem::path& location) {
    const auto path = PathRules::standardized(location);
    const std::string user = std::to_string(::getuid());
    if (const auto home = dataHome(); home && path == *home / "Trash") {
        return openExisting(path, {});
    }
    const auto parent = path.parent_path();
    if (path.filename() == ".Trash-" + user && isMountTop(parent)) {
        return openExisting(path, parent);
    }
    const auto top = parent.parent_path();
    if (path.filename() == user && parent.filename() == ".Trash" && isMountTop(top)) {
        return openExisting(path, top);
    }
    return std::nullopt;
}

}  // namespace tallowmere
