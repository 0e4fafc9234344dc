#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "measurement/AIStorageScanner.h"
#include "removal/RemovalOptions.h"
#include "removal/StorageCleanupResult.h"
#include "removal/StorageLocationSnapshot.h"
#include "removal/StorageRemovalMethod.h"

namespace tallowmere::StorageLocationTrash {

// The outermost distinct folders of `folders` (standardized), shortest path first.
std::vector<std::filesystem::path> outermost(const std::vector<std::filesystem::path>& folders);

// Walks `folder` and fingerprints it. Throws ReviewError (broad, unavailable, too many items),
// FileTrashError (reached through a symbolic link), FileSystemError (an item's metadata
// could not be read) or ScanCancelled.
StorageLocationSnapshot snapshot(const std::filesystem::path& folder, const std::string& category,
                                 const std::string& detail, std::int64_t maxEntries,
                                 const ScanOptions& options = {});

// Removes each reviewed folder that is still exactly as snapshotted (outermost ones only, each
// once). Each is first taken from its place (into the Trash, or aside for deletion) and the
// taken folder is checked; one that is not the reviewed folder goes back, and a permanent
// removal deletes only the items the check recorded. One "name: reason" text per folder left
// in place. Stops between folders when asked. Never throws.
StorageCleanupResult remove(const std::vector<StorageLocationSnapshot>& snapshots,
                            StorageRemovalMethod method, const RemovalOptions& options = {});

StorageCleanupResult moveToTrash(const std::vector<StorageLocationSnapshot>& snapshots,
                                 const RemovalOptions& options = {});

}  // namespace tallowmere::StorageLocationTrash
