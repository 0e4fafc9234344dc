#pragma once

#include <string>

#include "measurement/AIStorageScanner.h"
#include "removal/FolderRecords.h"
#include "removal/StorageLocationSnapshot.h"

namespace tallowmere::StorageLocationTrash {

// Walks the folder `name` in the open folder `parentFd` and answers its records when it is
// still exactly the folder `reviewed` describes: the same identity, items and change times.
// The removal and the restore call it on an item already moved out of the user's reach, so
// that what they go on to delete or move back is the object checked. Throws FileTrashError
// when it differs, ReviewError or FileSystemError when it cannot be walked, ScanCancelled.
FolderRecords checkedFolder(int parentFd, const std::string& name,
                            const StorageLocationSnapshot& reviewed, const ScanOptions& options);

}  // namespace tallowmere::StorageLocationTrash
