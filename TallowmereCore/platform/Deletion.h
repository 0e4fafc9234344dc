#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>

namespace tallowmere::Deletion {

// Deletes the file (or symbolic link) at `path` without following it. Throws FileSystemError.
void removeFile(const std::filesystem::path& path);

// Called just before the deletion walk opens the folder `name` inside the open folder
// `parentFd`; tests use it to swap a folder for a symbolic link at the worst moment.
using BeforeOpen = std::function<void(int parentFd, const char* name)>;

// Deletes `folder` and everything in it, walking with folder descriptors so that no symbolic
// link is followed, even one swapped in during the walk, and never entering another mount.
// Throws FileSystemError describing the first item that could not be removed (with how many
// could not); what was removed stays removed.
void removeFolder(const std::filesystem::path& folder, const BeforeOpen& beforeOpen = {});

}  // namespace tallowmere::Deletion
