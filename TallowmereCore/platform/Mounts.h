#pragma once

#include <filesystem>

#include "platform/EntryStatus.h"

namespace tallowmere {

// True when both entries were reached through the same mount: the mount ids decide, and the
// devices only when the kernel reports no mount id (a bind mount shares its device).
bool sameMount(const EntryStatus& first, const EntryStatus& second);

// The mount point of the mount that holds `folder` (an absolute path without symbolic links,
// whose status is `folderStatus`): the outermost ancestor still on that mount.
std::filesystem::path mountPointOf(const std::filesystem::path& folder,
                                   const EntryStatus& folderStatus);

}  // namespace tallowmere
