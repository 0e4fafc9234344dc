#pragma once

#include <filesystem>
#include <string>

namespace tallowmere {

// A location's folder that a scan could not measure, or an entry inside one that it could not
// read, and why, in one sentence.
struct UnreadableFolder {
    std::filesystem::path path;
    std::string reason;

    bool operator==(const UnreadableFolder&) const = default;
};

}  // namespace tallowmere
