#pragma once

#include <cstdint>
#include <vector>

#include "measurement/Date.h"
#include "measurement/StorageFinding.h"
#include "measurement/UnreadableFolder.h"

namespace tallowmere {

// The result of one scan; for a progress snapshot, `completedAt` is when the scan started.
struct StorageScan {
    std::vector<StorageFinding> findings;
    std::int64_t absentLocations = 0;
    std::int64_t unreadableLocations = 0;
    Date completedAt = 0;
    // Each unreadable location's folder, in list order; a summary read back keeps only the count.
    std::vector<UnreadableFolder> unreadableFolders;

    std::int64_t allocatedBytes() const;
    // Unreadable locations, limited walks and skipped entries make a scan incomplete;
    // absent locations do not.
    bool incomplete() const;
};

}  // namespace tallowmere
