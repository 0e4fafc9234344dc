#include "platform/FileSystemError.h"

#include <cerrno>
#include <cstring>

namespace tallowmere {

FileSystemError FileSystemError::fromErrno(int code) { return {code, describeErrno(code)}; }

std::string describeErrno(int code) {
    switch (code) {
        case ENOENT: return "The file doesn’t exist.";
        case EACCES:
        case EPERM: return "You don’t have permission to access it.";
        case EEXIST:
        case ENOTEMPTY: return "An item with the same name already exists.";
        case EXDEV: return "It is on another file system, and items are never copied between file systems.";
        case ENOSPC: return "There isn’t enough space on the disk.";
        case EROFS: return "The disk is read-only.";
        case EBUSY: return "The item is in use.";
        case ELOOP: return "A symbolic link was found where a folder was expected.";
        case ENOTDIR: return "A part of the path is not a folder.";
        case ENAMETOOLONG: return "The name is too long.";
        case EIO: return "The disk reported an input/output error.";
        default: return std::string(std::strerror(code)) + ".";
    }
}

}  // namespace tallowmere
