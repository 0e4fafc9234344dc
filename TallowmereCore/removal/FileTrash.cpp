#include "removal/FileTrash.h"

#include <fcntl.h>

#include <cerrno>

#include "platform/EntryStatus.h"
#include "platform/FileSystemError.h"
#include "removal/RemovalErrors.h"

namespace tallowmere::FileTrash {

namespace {

// The file's current status when it still matches `entry`.
EntryStatus validatedStatus(const FileEntry& entry) {
    EntryStatus status;
    if (!readEntryStatus(AT_FDCWD, entry.url.c_str(), status)) {
        throw FileSystemError::fromErrno(errno);
    }
    const bool sameIdentity = !entry.fileIdentity || status.identity.text() == *entry.fileIdentity;
    const bool sameDate =
        status.hasModified &&
        dateFromFileTime(status.modifiedSeconds, status.modifiedNanoseconds) == entry.modified;
    if (status.kind == EntryKind::symbolicLink || !sameIdentity || !sameDate ||
        status.logicalBytes != entry.bytes) {
        throw FileTrashError();
    }
    return status;
}

}  // namespace

std::filesystem::path validate(const FileEntry& entry) {
    validatedStatus(entry);
    return entry.url;
}

Trash::TrashedItem move(const FileEntry& entry) {
    const EntryStatus status = validatedStatus(entry);
    return Trash::moveToTrash(entry.url, status.identity);
}

}  // namespace tallowmere::FileTrash
