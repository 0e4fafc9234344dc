#include "measurement/StorageLocation.h"

#include "platform/PathRules.h"

namespace tallowmere {

std::filesystem::path StorageLocation::url(const std::filesystem::path& home) const {
    if (relativePath.starts_with('/')) {
        return PathRules::standardized(relativePath);
    }
    return PathRules::standardized(home / relativePath);
}

}  // namespace tallowmere
