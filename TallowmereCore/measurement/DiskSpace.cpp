#include "measurement/DiskSpace.h"

#include "platform/VolumeCapacity.h"

namespace tallowmere {

DiskSpace DiskSpace::read(const std::filesystem::path& folder) {
    const VolumeCapacity capacity = readVolumeCapacity(folder);
    return {capacity.total, capacity.available};
}

}  // namespace tallowmere
