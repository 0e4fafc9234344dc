#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "measurement/Date.h"
#include "measurement/FileEntry.h"
#include "platform/FilePath.h"

namespace tallowmere {

// A file that may be cleaned on its own: the scan's view of it, the location folder it was
// found in, and the bytes it occupies on disk.
struct StorageCleanupFile {
    FileEntry entry;
    FilePath root;
    std::string category;
    std::int64_t allocatedBytes = 0;
    bool includesRecent = false;
    // The file's status change time when the review was prepared, so that a rewrite that keeps
    // the size and modification date still counts as a change; nothing before a review.
    std::optional<Date> statusChanged;

    std::string id() const { return entry.id(); }
};

}  // namespace tallowmere
