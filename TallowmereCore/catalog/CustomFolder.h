#pragma once

#include <filesystem>

#include "catalog/StorageLayout.h"
#include "measurement/StorageLocation.h"

namespace tallowmere {

// The location of a folder the user asked to track: owned by the folder's own name, with
// the absolute `folder` path (as given) as its path, its detail worded for `layout`.
StorageLocation customFolderLocation(const std::filesystem::path& folder,
                                     StorageLayout layout = nativeStorageLayout());

}  // namespace tallowmere
