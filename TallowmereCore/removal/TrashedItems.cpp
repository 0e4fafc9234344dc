#include "removal/TrashedItems.h"

#include <cerrno>

#include "platform/FileSystemError.h"
#include "removal/RemovalScope.h"

namespace tallowmere::AIStorageCleanup {

void checkRecordedPaths(const TrashedStorageFile& item) {
    if (!isStandardAbsolutePath(item.original.url) || !isStandardAbsolutePath(item.trashURL)) {
        throw FileSystemError(EINVAL,
                              "Its undo record names a path that is not absolute and "
                              "standardised, so it was not used.");
    }
}

}  // namespace tallowmere::AIStorageCleanup
