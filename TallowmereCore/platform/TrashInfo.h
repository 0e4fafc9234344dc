#pragma once

#include <ctime>
#include <optional>
#include <string>
#include <string_view>

namespace tallowmere {

// The content of a freedesktop.org Trash info file: `originalPath` (absolute for the home trash,
// relative to the mount point for a trash at the top of a mount) percent-encoded byte by byte,
// and `deletion` as local time.
std::string trashInfoText(const std::string& originalPath, std::time_t deletion);

// The original path an info file records (percent-decoded, so any bytes), or nothing when
// `text` is not an info file: no "[Trash Info]" group, no Path key in it, or a broken escape.
std::optional<std::string> trashInfoPath(std::string_view text);

}  // namespace tallowmere
