#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/EntryStatus.h"

namespace tallowmere {

// True when both entries were reached through the same mount: the mount ids decide, and the
// devices only when the kernel reports no mount id (a bind mount shares its device).
bool sameMount(const EntryStatus& first, const EntryStatus& second);

// The mount point of the mount that holds `folder` (an absolute path without symbolic links,
// whose status is `folderStatus`): the outermost ancestor still on that mount.
std::filesystem::path mountPointOf(const std::filesystem::path& folder,
                                   const EntryStatus& folderStatus);

// One mount as the mount table lists it.
struct MountRecord {
    std::uint64_t id = 0;      // as EntryStatus::mountId gives it
    std::uint64_t device = 0;  // of the file system: the same for every mount of one
    std::string root;          // the folder mounted, as a path inside its file system
    std::string mountPoint;
};

// This process's mounts (/proc/self/mountinfo), in the table's order; none when it cannot be
// read.
std::vector<MountRecord> readMountTable();

}  // namespace tallowmere
