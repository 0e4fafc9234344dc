#pragma once

#include <filesystem>
#include <string>

namespace tallowmere {

// One place where a tool keeps data. `relativePath` is home-relative ("/"-separated, no
// leading "/") or absolute (starting with "/"). Texts are byte strings: owners and details
// made from folder names may hold any bytes a name can.
struct StorageLocation {
    std::string owner;
    std::string category;
    std::string relativePath;
    std::string detail;

    const std::string& id() const { return relativePath; }

    // The folder this location names under `home`, standardized; links are not resolved.
    std::filesystem::path url(const std::filesystem::path& home) const;
};

}  // namespace tallowmere
