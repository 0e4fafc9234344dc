#pragma once

#include <filesystem>
#include <optional>

#include "platform/EntryStatus.h"
#include "platform/FileDescriptor.h"

namespace tallowmere {

// A freedesktop.org trash folder opened for one move.
struct TrashFolder {
    std::filesystem::path location;
    // The mount point that info files' paths are relative to; empty for the home trash, whose
    // paths are absolute.
    std::filesystem::path topFolder;
    FileDescriptor files;  // usable for *at calls only
    FileDescriptor info;   // readable, so that it can be flushed
};

// The trash that takes items from `folder` (absolute, without symbolic links; `folderStatus`
// its status), created as needed: the home trash when it lies on the same mount, else the
// trash at the top of the folder's mount. A trash folder or part of one that is a symbolic link,
// belongs to another user or may be changed by others is never used. Throws FileSystemError
// when there is none to use.
TrashFolder trashFolderFor(const std::filesystem::path& folder, const EntryStatus& folderStatus);

// The trash folder at `location` (absolute, standardized) when it is one of this user's trashes,
// as `trashFolderFor` would use it, and exists; nothing otherwise. Creates nothing.
std::optional<TrashFolder> existingTrashFolder(const std::filesystem::path& location);

}  // namespace tallowmere
