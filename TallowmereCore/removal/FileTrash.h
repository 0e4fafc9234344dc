#pragma once

#include <filesystem>

#include "measurement/FileEntry.h"
#include "platform/Trash.h"

namespace tallowmere::FileTrash {

// The entry's path when the file there is still exactly the one the scan recorded (not a
// link; same identity, modification date and size). Throws FileTrashError when it changed,
// FileSystemError when it cannot be read.
std::filesystem::path validate(const FileEntry& entry);

// Validates the entry, then moves the file to the Trash; returns where it now lies. Throws as
// `validate` does, or FileSystemError when the move fails.
Trash::TrashedItem move(const FileEntry& entry);

}  // namespace tallowmere::FileTrash
