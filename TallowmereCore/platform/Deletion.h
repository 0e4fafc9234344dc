#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include "platform/EntryStatus.h"

namespace tallowmere::Deletion {

// Deletes the file (or symbolic link) at `path` without following it. Throws FileSystemError.
void removeFile(const std::filesystem::path& path);

// Deletes the file (or symbolic link) `name` in the open folder `folderFd`. Throws
// FileSystemError, with its own words for a folder.
void removeFileAt(int folderFd, const std::string& name);

// Whether the walk may delete the item it meets at `relativePath` (below the folder being
// deleted, "/"-separated) whose status it has just read.
using Removable = std::function<bool(std::string_view relativePath, const EntryStatus& status)>;

// Called just before the deletion walk opens the folder `name` inside the open folder
// `parentFd`; tests use it to swap a folder for a symbolic link at the worst moment.
using BeforeOpen = std::function<void(int parentFd, const char* name)>;

// Deletes the folder `name` in the open folder `parentFd` and every item in it that
// `removable` accepts, walking with folder descriptors so that no symbolic link is followed,
// even one swapped in during the walk, and never entering another mount. `seen` is the status
// the folder was checked with; a folder found in its place is not entered. What `removable`
// refuses stays, with the folders that hold it, and so does an item added during the walk.
// Returns how many items stayed that way. Throws FileSystemError describing the first item
// that could not be removed (with how many could not); what was removed stays removed.
std::size_t removeFolderAt(int parentFd, const std::string& name, const EntryStatus& seen,
                           const Removable& removable, const BeforeOpen& beforeOpen = {});

}  // namespace tallowmere::Deletion
