#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "measurement/StorageFinding.h"
#include "removal/StorageCleanupFile.h"

namespace tallowmere::cli {

// How much of what could be cleaned file by file in some folders one review takes: a review
// takes at most 500 files, the largest first.
struct ReviewReach {
    std::int64_t takenFiles = 0;
    std::int64_t takenBytes = 0;
    std::int64_t eligibleFiles = 0;
    std::int64_t eligibleBytes = 0;

    bool takesEverything() const { return takenFiles >= eligibleFiles; }
    // "500 of 2,315 eligible files (52.9 MB of 325.3 MB); review again for more"
    std::string partText() const;
};

// The reach of a review that takes `taken` from the cache and log folders among `findings`,
// counting their recent files too when `includeRecent`.
ReviewReach reachOf(const std::vector<StorageFinding>& findings,
                    const std::vector<StorageCleanupFile>& taken, bool includeRecent);

}  // namespace tallowmere::cli
