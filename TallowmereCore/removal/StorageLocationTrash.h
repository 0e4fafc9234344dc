#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "measurement/AIStorageScanner.h"
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
// once); one "name: reason" text per folder left in place. Never throws.
StorageCleanupResult remove(const std::vector<StorageLocationSnapshot>& snapshots,
                            StorageRemovalMethod method, const ScanOptions& options = {});

StorageCleanupResult moveToTrash(const std::vector<StorageLocationSnapshot>& snapshots,
                                 const ScanOptions& options = {});

}  // namespace tallowmere::StorageLocationTrash
