#include "platform/EntryStatus.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <cerrno>

#include "platform/FileSystemError.h"

#ifndef STATX_MNT_ID
#define STATX_MNT_ID 0x1000U
#endif

namespace tallowmere {

namespace {

EntryKind kindOf(std::uint16_t mode) {
    if (S_ISDIR(mode))
        return EntryKind::directory;
    if (S_ISREG(mode))
        return EntryKind::regularFile;
    if (S_ISLNK(mode))
        return EntryKind::symbolicLink;
    return EntryKind::other;
}

}  // namespace

bool readEntryStatus(int directoryFd, const char* name, EntryStatus& status) {
    constexpr unsigned wanted = STATX_TYPE | STATX_MODE | STATX_NLINK | STATX_INO | STATX_SIZE |
                                STATX_BLOCKS | STATX_MTIME | STATX_CTIME | STATX_MNT_ID;
    const int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | (*name == '\0' ? AT_EMPTY_PATH : 0);
    struct statx result;
    if (::statx(directoryFd, name, flags, wanted, &result) != 0) {
        return false;
    }
    status.kind = (result.stx_mask & STATX_TYPE) ? kindOf(result.stx_mode) : EntryKind::unknown;
    status.linkCount = result.stx_nlink;
    status.identity = {makedev(result.stx_dev_major, result.stx_dev_minor), result.stx_ino};
    status.logicalBytes =
        (result.stx_mask & STATX_SIZE) ? static_cast<std::int64_t>(result.stx_size) : 0;
    status.allocatedBytes = (result.stx_mask & STATX_BLOCKS)
                                ? static_cast<std::int64_t>(result.stx_blocks) * 512
                                : status.logicalBytes;
    status.hasModified = (result.stx_mask & STATX_MTIME) != 0;
    status.modifiedSeconds = result.stx_mtime.tv_sec;
    status.modifiedNanoseconds = static_cast<std::int32_t>(result.stx_mtime.tv_nsec);
    status.hasStatusChanged = (result.stx_mask & STATX_CTIME) != 0;
    status.statusChangedSeconds = result.stx_ctime.tv_sec;
    status.statusChangedNanoseconds = static_cast<std::int32_t>(result.stx_ctime.tv_nsec);
    status.mountId = (result.stx_mask & STATX_MNT_ID) ? result.stx_mnt_id : 0;
    return true;
}

EntryStatus entryStatusAt(int directoryFd, const char* name) {
    EntryStatus status;
    if (!readEntryStatus(directoryFd, name, status)) {
        throw FileSystemError::fromErrno(errno);
    }
    return status;
}

}  // namespace tallowmere
