#pragma once

#include <string>
#include <vector>

#include "measurement/LocationScope.h"
#include "platform/Mounts.h"

namespace tallowmere {

// For each of `scopes` (the locations a scan measures, in order, whose `nestedFolders` name the
// other locations' folders), the folders inside it that the scan would otherwise measure a
// second time through another mount of the same file system: a mount of a folder that a
// location measures on its own mount (a bind mount of it), and another location's folder seen
// through a mount. Its walk passes over them as over nested locations, so a folder counts once
// and the answer does not depend on which walk meets it first. `mounts` is the mount table;
// reads the status of the few folders involved.
std::vector<std::vector<std::string>> mountCopies(const std::vector<const LocationScope*>& scopes,
                                                  const std::vector<MountRecord>& mounts);

}  // namespace tallowmere
