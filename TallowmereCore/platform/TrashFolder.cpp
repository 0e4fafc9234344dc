#include "platform/TrashFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
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

[[noreturn]] void failNoUsableTrash(int code) {
    throw FileSystemError(code, "No usable trash was found for this item’s file system.");
}

// Nothing when no home folder is known; items can then only go to the trash of their mount.
std::optional<std::filesystem::path> dataHome() {
    const char* variable = std::getenv("XDG_DATA_HOME");
    std::filesystem::path configured;
    try {
        configured = variable && variable[0] == '/'
                         ? std::filesystem::path(variable)
                         : UserFolders::homeFolder() / ".local" / "share";
    } catch (const std::runtime_error&) {
        return std::nullopt;
    }
    // The user's own data folder may be reached through a link; the trash in it never is.
    return PathRules::resolvingSymlinks(configured);
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

// Sets errno to EPERM when the folder belongs to someone else, who could read or replace what
// is trashed there.
bool ownedByUser(int folderFd) {
    struct stat status;
    if (::fstat(folderFd, &status) != 0) {
        return false;
    }
    errno = status.st_uid == ::getuid() ? 0 : EPERM;
    return errno == 0;
}

// Fills in files/ and info/ of an opened trash; false with errno set when one is unusable.
bool openParts(int trashFd, TrashFolder& trash) {
    trash.files = openOrCreateFolder(trashFd, "files", O_PATH);
    if (!trash.files.valid()) {
        return false;
    }
    trash.info = openOrCreateFolder(trashFd, "info", O_RDONLY);
    return trash.info.valid();
}

TrashFolder homeTrash(const std::filesystem::path& home) {
    const FileDescriptor data = openCreatingMissing(home);
    const FileDescriptor trashFd =
        data.valid() ? openOrCreateFolder(data.get(), "Trash", O_PATH) : FileDescriptor();
    TrashFolder trash{home / "Trash", {}, {}, {}};
    if (!trashFd.valid() || !openParts(trashFd.get(), trash)) {
        failNoUsableTrash(errno);
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
    if (!own.valid() || !ownedByUser(own.get()) || !openParts(own.get(), trash)) {
        return std::nullopt;
    }
    return trash;
}

// $topdir/.Trash-$uid, the user's own trash on that mount.
TrashFolder ownTopTrash(int topFd, const std::filesystem::path& top) {
    const std::string name = ".Trash-" + std::to_string(::getuid());
    const FileDescriptor own = openOrCreateFolder(topFd, name.c_str(), O_PATH);
    TrashFolder trash{top / name, top, {}, {}};
    if (!own.valid() || !ownedByUser(own.get()) || !openParts(own.get(), trash)) {
        failNoUsableTrash(errno);
    }
    return trash;
}

TrashFolder topTrash(const std::filesystem::path& folder, const EntryStatus& folderStatus) {
    const auto top = mountPointOf(folder, folderStatus);
    const FileDescriptor topFd = openFolderWithoutLinks(top);
    EntryStatus topStatus;
    if (!readEntryStatus(topFd.get(), "", topStatus)) {
        failNoUsableTrash(errno);
    }
    if (!sameMount(topStatus, folderStatus)) {
        failNoUsableTrash(EXDEV);  // the mounts changed while the top was looked for
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

}  // namespace tallowmere
