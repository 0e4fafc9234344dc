#pragma once

#include <memory>

#include "measurement/LocationScope.h"
#include "measurement/LocationTally.h"
#include "measurement/StorageFinding.h"
#include "measurement/WalkSettings.h"

namespace tallowmere {

// Walks one location's folder on the calling thread, depth first, in the order the file system
// lists each folder, and measures it: the walk that a scan's result is defined by. Other locations'
// folders inside it are passed over. A file that may be met again is counted only if `counted` has
// not met it yet. Stops after `settings.maxEntries` entries; throws ScanCancelled when a stop is
// requested.
StorageFinding walkLocation(const LocationScope& scope, CountedIdentities& counted,
                            const WalkSettings& settings);

}  // namespace tallowmere
