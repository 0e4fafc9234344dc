#pragma once

#include <filesystem>
#include <string>

namespace tallowmere::PathRules {

// Removes "." components, folds ".." into its parent and drops a trailing "/"; symbolic
// links are not resolved. "/" stays "/"; a relative path stays relative.
std::filesystem::path standardized(const std::filesystem::path& path);

// Makes `path` absolute against the current folder, then standardizes it.
std::filesystem::path absoluteStandardized(const std::filesystem::path& path);

// The last component of a standardized path ("" for "/").
std::string lastComponent(const std::filesystem::path& path);

// `path` standardized, with every symbolic link in the part that exists resolved component by
// component; the part that does not exist is kept as written.
std::filesystem::path resolvingSymlinks(const std::filesystem::path& path);

// True when `path` lies strictly inside `folder` (a "/" follows the folder's path).
bool isInside(const std::string& path, const std::string& folder);

}  // namespace tallowmere::PathRules
