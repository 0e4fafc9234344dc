#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "Options.h"
#include "catalog/StorageLayout.h"
#include "measurement/StorageLocation.h"

namespace tallowmere::cli {

// The layout named by --layout, else the running system's; throws UsageError for another name.
StorageLayout layoutFrom(const Options& options);

// `path` as a person typed it: a leading "~/" (or "~" alone) stands for the home folder, which
// the shell leaves as it is when the path follows "=" or sits in quotes; then made absolute
// against the current folder and standardized (links not resolved).
std::filesystem::path typedPath(const std::string& path);

// The --track paths as typedPath reads them, in the order given; throws UsageError for an
// empty one.
std::vector<std::string> trackedPaths(const Options& options);

}  // namespace tallowmere::cli
