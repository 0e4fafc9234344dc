#pragma once

#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include "measurement/StorageLocation.h"
#include "measurement/StorageScan.h"

namespace tallowmere::cli {

// The scan as one compact JSON object, keys in the documented order:
// its findings with their guidance, its tools, then the folders that could not be read.
// Written as it goes, so a large scan needs little memory; ends with a newline.
void writeScanJson(std::ostream& out, StorageScan scan, const std::filesystem::path& home);

// The discovered locations under `home`, each with the folder it names, as one compact JSON
// object (no trailing newline).
std::string locationsJson(const std::vector<StorageLocation>& locations,
                          const std::filesystem::path& home);

// The catalog as one compact JSON object (no trailing newline).
std::string catalogJson(const std::vector<StorageLocation>& locations,
                        const std::vector<std::string>& supportedOwners);

}  // namespace tallowmere::cli
