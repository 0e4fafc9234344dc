#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "measurement/FileEntry.h"
#include "removal/StorageLocationSnapshot.h"

namespace tallowmere {

// One item moved to the Trash: what and where it was, and where it lies now. A folder keeps
// the snapshot it was reviewed with, to check it before it goes back.
struct TrashedStorageFile {
    FileEntry original;
    std::filesystem::path trashURL;
    std::optional<StorageLocationSnapshot> locationSnapshot;

    bool operator==(const TrashedStorageFile&) const = default;
};

// What a removal did: how many items left their place, the undo records of those moved to the
// Trash, and one "name: reason" text per item left in place.
struct StorageCleanupResult {
    std::int64_t moved = 0;
    std::vector<TrashedStorageFile> items;
    std::vector<std::string> errors;

    std::vector<std::filesystem::path> trashedURLs() const {
        std::vector<std::filesystem::path> urls;
        for (const auto& item : items) {
            urls.push_back(item.trashURL);
        }
        return urls;
    }
};

// What an undo did: how many items went back, and the items (with one text each) that stay in
// the Trash for a later attempt.
struct StorageRestoreResult {
    std::int64_t restored = 0;
    std::vector<TrashedStorageFile> remaining;
    std::vector<std::string> errors;
};

}  // namespace tallowmere
