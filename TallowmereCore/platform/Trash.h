#pragma once

#include <filesystem>
#include <string>

#include "platform/FileSystemError.h"
#include "platform/TrashFolder.h"

namespace tallowmere::Trash {

// An item in the files/ folder of a trash, reached through the trash's open folders, so that
// it can be checked where it lies and moved on without its path being looked up again.
struct TrashedItem {
    std::filesystem::path location;  // the trash's files/ folder and `name`
    TrashFolder trash;
    std::string name;  // in files/

    int folderFd() const { return trash.files.get(); }
};

// Moves `item`, whose folder is open as `parentFd`, into the trash of its file system as the
// desktop's Trash shows it (the home trash for the home folder's file system, else the trash at
// the top of the item's mount), its info file written first; a symbolic link is moved as the
// link. Never copies between file systems and never replaces anything. Throws FileSystemError
// when the item stays in place.
TrashedItem moveIn(int parentFd, const std::filesystem::path& item);

// The item an undo record names has left its trash: the desktop put it back, or the trash was
// emptied. Nothing is left to restore, now or later.
class NoLongerInTrash : public FileSystemError {
public:
    NoLongerInTrash();
};

// What an item is looked up for; a refusal says what was not done with it.
enum class Purpose { restore, deletion };

// The item at `location` when that lies directly in the files/ folder of one of this user's
// trashes and the item's info file records `original` as its former place. Throws
// NoLongerInTrash when that trash no longer holds it, and FileSystemError otherwise: an undo
// record alone never makes something restorable or deletable.
TrashedItem find(const std::filesystem::path& location, const std::filesystem::path& original,
                 Purpose purpose = Purpose::restore);

// Moves `item` out of the trash to `name` in the open folder `folderFd`, without creating
// folders or replacing anything; its info file stays until `forget`. Throws FileSystemError
// when the item stays in the trash.
void moveOut(const TrashedItem& item, int folderFd, const std::string& name);

// Removes the info file of an item moved out of the trash. A failure is not reported: the item
// is out, and a stale record only leaves a dead entry in the desktop's Trash.
void forget(const TrashedItem& item);

}  // namespace tallowmere::Trash
