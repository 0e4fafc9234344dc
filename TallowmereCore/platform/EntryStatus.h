#pragma once

#include <cstdint>

#include "platform/FileIdentity.h"

namespace tallowmere {

enum class EntryKind : std::uint8_t { directory, regularFile, symbolicLink, other, unknown };

// The metadata of one directory entry, read with one call that never follows a link.
struct EntryStatus {
    EntryKind kind = EntryKind::unknown;
    std::uint32_t linkCount = 0;
    FileIdentity identity;
    std::int64_t logicalBytes = 0;
    std::int64_t allocatedBytes = 0;
    std::int64_t modifiedSeconds = 0;
    std::int32_t modifiedNanoseconds = 0;
    bool hasModified = false;
    // The last change of the entry's content or metadata; a rewrite that restores the size and
    // modification date still moves it. Renaming the entry moves it too.
    std::int64_t statusChangedSeconds = 0;
    std::int32_t statusChangedNanoseconds = 0;
    bool hasStatusChanged = false;
    // The mount the entry was reached through; 0 when the kernel cannot tell.
    std::uint64_t mountId = 0;
};

// Reads the status of `name` relative to the open directory `directoryFd` (or of the
// directory itself when `name` is empty). Returns false and sets errno when it cannot.
bool readEntryStatus(int directoryFd, const char* name, EntryStatus& status);

// The same, for callers that treat a failed read as an error: throws FileSystemError.
EntryStatus entryStatusAt(int directoryFd, const char* name);

}  // namespace tallowmere
