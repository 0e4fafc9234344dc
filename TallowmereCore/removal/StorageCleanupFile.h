#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "measurement/Date.h"
#include "measurement/FileEntry.h"
#include "platform/FilePath.h"

namespace tallowmere {

// The categories of the locations whose files may be cleaned one by one. A scan keeps up to a
// thousand files a location, so a file holds its category in one byte.
enum class CleanupCategory : std::uint8_t { cache, logs };

// "Cache" or "Logs", as the catalog names the category.
std::string_view nameOf(CleanupCategory category);
// The category the catalog names `name`, if its files may be cleaned one by one.
std::optional<CleanupCategory> cleanupCategoryNamed(std::string_view name);

// A file that may be cleaned on its own: the scan's view of it, the location folder it was
// found in, and the bytes it occupies on disk.
struct StorageCleanupFile {
    FileEntry entry;
    FilePath root;
    CleanupCategory category = CleanupCategory::cache;
    std::int64_t allocatedBytes = 0;
    bool includesRecent = false;
    // The file's status change time when the review was prepared, so that a rewrite that keeps
    // the size and modification date still counts as a change; nothing before a review.
    std::optional<Date> statusChanged;

    std::string id() const { return entry.id(); }
};

}  // namespace tallowmere
