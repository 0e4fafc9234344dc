#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "removal/StorageCleanupFile.h"

namespace tallowmere {

// Files of one kind that may be cleaned one by one, as the removal review shows them.
struct StorageCleanupGroup {
    // What the files are: rebuildable cache files or older diagnostic logs.
    enum class Kind { cache, logs };

    Kind kind = Kind::cache;
    std::vector<StorageCleanupFile> files;

    // A list of groups holds each kind at most once, so the kind identifies a group.
    Kind id() const { return kind; }

    // Bytes on disk of all `files`; 0 when there are none.
    std::int64_t allocatedBytes() const;

    // A group per kind that has files ("Cache" files, then "Logs" files, matched exactly),
    // each keeping the input order; files of any other category are dropped.
    static std::vector<StorageCleanupGroup> group(const std::vector<StorageCleanupFile>& files);
};

namespace StorageCleanupKind {

// Every kind, in the order groups are made and shown.
inline constexpr std::array allCases{
    StorageCleanupGroup::Kind::cache,
    StorageCleanupGroup::Kind::logs,
};

// The kind's stable name: "cache" or "logs".
std::string_view rawValue(StorageCleanupGroup::Kind kind);

// The kind named exactly `rawValue`, or none for any other text.
std::optional<StorageCleanupGroup::Kind> fromRawValue(std::string_view rawValue);

// The heading of the kind's group.
std::string_view title(StorageCleanupGroup::Kind kind);

// The name of the system symbol image shown beside the title.
std::string_view symbol(StorageCleanupGroup::Kind kind);

// What the kind's files are and what removing them loses, in two sentences.
std::string_view explanation(StorageCleanupGroup::Kind kind);

}  // namespace StorageCleanupKind

}  // namespace tallowmere
