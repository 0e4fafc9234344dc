#pragma once

#include <filesystem>

#include "measurement/StorageLocation.h"

namespace tallowmere {

// The location of a folder the user asked to track: owned by the folder's own name, with
// the absolute `folder` path (as given) as its path.
StorageLocation customFolderLocation(const std::filesystem::path& folder);

}  // namespace tallowmere
