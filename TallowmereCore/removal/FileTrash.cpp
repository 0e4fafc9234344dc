#include "removal/FileTrash.h"

#include "removal/RemovalErrors.h"

namespace tallowmere::FileTrash {

void validate(const FileEntry& entry, const EntryStatus& status,
              std::optional<Date> statusChanged) {
    const bool sameIdentity = !entry.fileIdentity || status.identity == *entry.fileIdentity;
    const bool sameDate =
        status.hasModified &&
        dateFromFileTime(status.modifiedSeconds, status.modifiedNanoseconds) == entry.modified;
    const bool sameChange =
        !statusChanged || (status.hasStatusChanged &&
                           dateFromFileTime(status.statusChangedSeconds,
                                            status.statusChangedNanoseconds) == *statusChanged);
    if (status.kind != EntryKind::regularFile || !sameIdentity || !sameDate || !sameChange ||
        status.logicalBytes != entry.bytes) {
        throw FileTrashError();
    }
}

}  // namespace tallowmere::FileTrash
