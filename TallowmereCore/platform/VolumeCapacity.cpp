#include "platform/VolumeCapacity.h"

#include <sys/statvfs.h>

#include <cerrno>
#include <system_error>

namespace tallowmere {

VolumeCapacity readVolumeCapacity(const std::filesystem::path& folder) {
    struct statvfs volume;
    if (::statvfs(folder.c_str(), &volume) != 0) {
        throw std::system_error(
            errno, std::generic_category(),
            "Cannot read the capacity of the volume holding " + folder.native());
    }
    const auto blockSize = static_cast<std::int64_t>(volume.f_frsize);
    return {static_cast<std::int64_t>(volume.f_blocks) * blockSize,
            static_cast<std::int64_t>(volume.f_bavail) * blockSize};
}

}  // namespace tallowmere
