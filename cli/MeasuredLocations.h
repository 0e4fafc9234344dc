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

// The --track paths made absolute and standardized (links not resolved), in the order given;
// throws UsageError for an empty one.
std::vector<std::string> trackedPaths(const Options& options);

}  // namespace tallowmere::cli
