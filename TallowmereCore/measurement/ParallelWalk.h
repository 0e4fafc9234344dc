#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

#include "measurement/LocationScope.h"
#include "measurement/LocationTally.h"
#include "measurement/WalkSettings.h"

namespace tallowmere {

// Called for each root, in the order given, once it and every root before it are walked:
// with the root's tally, and whether the location holds more entries than the limit (its tally
// is then partial). Runs on the calling thread.
using WalkedHandler = std::function<void(std::size_t root, LocationTally&& tally, bool overLimit)>;

// Walks the folders of `roots` with `threads` threads, the calling thread one of them. Any thread
// takes any folder, and a wide folder in parts of 1,024 entries; each thread tallies what it meets
// on its own, and the tallies of a location are added up once it is walked. Files that may be met
// again are left in the tally for LocationTally::countLinkedFiles(). Throws ScanCancelled when a
// stop is requested, and whatever a thread threw.
void walkInParallel(const std::vector<const LocationScope*>& roots, std::size_t threads,
                    const WalkSettings& settings, const WalkedHandler& onWalked);

}  // namespace tallowmere
