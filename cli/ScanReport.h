#pragma once

#include <filesystem>
#include <string>

#include "measurement/StorageScan.h"

namespace tallowmere::cli {

// The scan as a report for a person: per owner its size, file count and folders (largest
// first), then the totals. Names are escaped so none can drive the terminal.
std::string scanReport(StorageScan scan, const std::filesystem::path& home);

// A path shown to a person: "~/…" below the home folder, escaped for the terminal.
std::string displayPath(const std::filesystem::path& path, const std::filesystem::path& home);

}  // namespace tallowmere::cli
