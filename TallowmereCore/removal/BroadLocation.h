#pragma once

#include <filesystem>

namespace tallowmere::StorageLocationTrash {

// True when `target` (absolute, standardized, links not resolved) holds far more than one tool's
// storage or the user's own files, keys or trash, so that removing it is never allowed; throws
// std::runtime_error when no home folder is known.
bool isBroadLocation(const std::filesystem::path& target);

}  // namespace tallowmere::StorageLocationTrash
