#pragma once

#include <ctime>
#include <string>

namespace tallowmere {

// The content of a freedesktop.org Trash info file: `originalPath` (absolute for the home trash,
// relative to the mount point for a trash at the top of a mount) percent-encoded byte by byte,
// and `deletion` as local time.
std::string trashInfoText(const std::string& originalPath, std::time_t deletion);

}  // namespace tallowmere
