#include "measurement/DiskSpace.h"

#include <limits>

#include "platform/VolumeCapacity.h"

namespace tallowmere {

DiskSpace DiskSpace::read(const std::filesystem::path& folder) {
    const VolumeCapacity capacity = readVolumeCapacity(folder);
    return {capacity.total, capacity.available};
}

bool DiskSpace::isLow(std::int64_t thresholdGB) const {
    std::int64_t thresholdBytes = 0;
    if (__builtin_mul_overflow(thresholdGB, std::int64_t{1'000'000'000}, &thresholdBytes)) {
        return thresholdGB > 0;
    }
    return available < thresholdBytes;
}

}  // namespace tallowmere
