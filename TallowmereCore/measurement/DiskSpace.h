#pragma once

#include <cstdint>
#include <filesystem>

namespace tallowmere {

// Total and available bytes of the volume that holds a folder.
struct DiskSpace {
    std::int64_t total = 0;
    std::int64_t available = 0;

    // Reads the capacities of the volume holding `folder`; throws std::system_error naming
    // the folder when the file system cannot tell.
    static DiskSpace read(const std::filesystem::path& folder);

    // True when fewer than `thresholdGB` decimal gigabytes are available. A threshold beyond
    // what 64 bits can hold in bytes (set by hand in a settings file) counts as the largest
    // or smallest byte count, so a huge threshold is always low and a hugely negative one never.
    bool isLow(std::int64_t thresholdGB) const;
};

}  // namespace tallowmere
