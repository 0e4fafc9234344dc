#pragma once

#include <optional>

#include "measurement/Date.h"
#include "measurement/FileEntry.h"
#include "platform/EntryStatus.h"

namespace tallowmere::FileTrash {

// Throws FileTrashError unless `status` is still the file `entry` records: a regular file, not
// a link, with the same identity (when one was recorded), modification date and size, and the
// same status change time when `statusChanged` is given.
void validate(const FileEntry& entry, const EntryStatus& status,
              std::optional<Date> statusChanged = std::nullopt);

}  // namespace tallowmere::FileTrash
