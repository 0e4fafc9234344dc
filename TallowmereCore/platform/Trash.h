#pragma once

#include <filesystem>

#include "platform/FileIdentity.h"

namespace tallowmere::Trash {

// Where a trashed item now lies, and whether the item found there is still the one that was
// moved (its identity checked after the move).
struct TrashedItem {
    std::filesystem::path location;
    bool identityMatches = true;
};

// Moves the file or folder at `item` (a symbolic link is moved as the link, never followed)
// into the trash of its file system, as the desktop's Trash shows it: the home trash for the
// home folder's file system, else the trash at the top of the item's mount. Never copies
// between file systems and never replaces anything. Throws FileSystemError when the item
// stays in place.
TrashedItem moveToTrash(const std::filesystem::path& item, const FileIdentity& expected);

// Moves `trashed` (a location `moveToTrash` returned) back to `original` without creating
// missing folders and without replacing anything there, then forgets its trash record.
// Throws FileSystemError when the item stays in the trash.
void restore(const std::filesystem::path& trashed, const std::filesystem::path& original);

}  // namespace tallowmere::Trash
