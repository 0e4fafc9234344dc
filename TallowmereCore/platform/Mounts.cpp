#include "platform/Mounts.h"

#include <fcntl.h>

namespace tallowmere {

bool sameMount(const EntryStatus& first, const EntryStatus& second) {
    if (first.mountId != 0 && second.mountId != 0) {
        return first.mountId == second.mountId;
    }
    return first.identity.device == second.identity.device;
}

std::filesystem::path mountPointOf(const std::filesystem::path& folder,
                                   const EntryStatus& folderStatus) {
    auto top = folder;
    EntryStatus above;
    while (top.has_relative_path() && readEntryStatus(AT_FDCWD, top.parent_path().c_str(), above) &&
           sameMount(above, folderStatus)) {
        top = top.parent_path();
    }
    return top;
}

}  // namespace tallowmere
