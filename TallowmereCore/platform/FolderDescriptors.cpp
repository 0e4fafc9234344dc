#include "platform/FolderDescriptors.h"

#include <fcntl.h>

#include <cerrno>

#include "platform/EntryStatus.h"
#include "platform/FileSystemError.h"
#include "platform/PathRules.h"

namespace tallowmere {

FileDescriptor openFolderAt(int parentFd, const char* name, int flags) {
    FileDescriptor folder(::openat(parentFd, name, flags | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (folder.valid() || errno != ENOTDIR) {
        return folder;
    }
    // With O_DIRECTORY the kernel answers ENOTDIR for a link too; a link deserves its own error.
    EntryStatus status;
    const bool isLink =
        readEntryStatus(parentFd, name, status) && status.kind == EntryKind::symbolicLink;
    errno = isLink ? ELOOP : ENOTDIR;
    return folder;
}

FileDescriptor openFolderWithoutLinks(const std::filesystem::path& folder) {
    const auto path = PathRules::standardized(folder);
    FileDescriptor current(
        ::open(path.is_absolute() ? "/" : ".", O_PATH | O_DIRECTORY | O_CLOEXEC));
    for (const auto& component : path.relative_path()) {
        if (!current.valid()) {
            break;
        }
        if (component != ".") {
            current = openFolderAt(current.get(), component.c_str(), O_PATH);
        }
    }
    if (!current.valid()) {
        throw FileSystemError::fromErrno(errno);
    }
    return current;
}

}  // namespace tallowmere
