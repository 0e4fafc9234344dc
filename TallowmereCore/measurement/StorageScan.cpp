#include "measurement/StorageScan.h"

#include <algorithm>

namespace tallowmere {

std::int64_t StorageScan::allocatedBytes() const {
    std::int64_t total = 0;
    for (const auto& finding : findings) {
        total += finding.allocatedBytes;
    }
    return total;
}

bool StorageScan::incomplete() const {
    return unreadableLocations > 0 || std::ranges::any_of(findings, [](const auto& finding) {
               return finding.limited || finding.skippedCount > 0;
           });
}

}  // namespace tallowmere
