#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "measurement/CountedIdentities.h"
#include "measurement/LocationScope.h"
#include "measurement/StorageFinding.h"
#include "measurement/WalkSettings.h"

namespace tallowmere {

// Given each location's finding, in the order of the locations, on the calling thread.
using FindingHandler = std::function<void(StorageFinding finding)>;

// Walks each location's folder depth first, in the order the file system lists each folder,
// and measures it: at most `settings.maxEntries` entries of each, other locations' folders
// inside it passed over. One thread at a time lists folders, in that order, so every entry's
// place in the walk is known as it is listed and the limit takes exactly the first entries;
// any of `threads` threads, the calling thread among them, reads the statuses of the files
// listed. A file that may be met again counts where the walk meets it first, whichever thread
// read it: such meetings are taken in walk order against `counted`. So the findings are the
// ones a single thread walking every folder in order gives. Throws ScanCancelled when a stop
// is requested, and whatever a thread threw.
void walkLocations(const std::vector<const LocationScope*>& locations, std::size_t threads,
                   const WalkSettings& settings, CountedIdentities& counted,
                   const FindingHandler& onFinding);

}  // namespace tallowmere
