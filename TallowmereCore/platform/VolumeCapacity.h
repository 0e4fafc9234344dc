#pragma once

#include <cstdint>
#include <filesystem>

namespace tallowmere {

struct VolumeCapacity {
    std::int64_t total = 0;
    std::int64_t available = 0;  // what an unprivileged user may still write
};

// Reads the capacity of the volume holding `folder`; throws std::system_error naming the
// folder when the file system cannot tell.
VolumeCapacity readVolumeCapacity(const std::filesystem::path& folder);

}  // namespace tallowmere
