#pragma once

#include <vector>

#include "measurement/AIStorageScanner.h"
#include "removal/StorageCleanupFile.h"
#include "removal/StorageCleanupResult.h"
#include "removal/StorageRemovalMethod.h"

namespace tallowmere::AIStorageCleanup {

// Removes each file that is still inside its location, reached without links, eligible and
// exactly as scanned; the others stay, each with one "name: reason" text. A path listed twice
// is handled once. Never throws.
StorageCleanupResult remove(const std::vector<StorageCleanupFile>& files,
                            StorageRemovalMethod method);

StorageCleanupResult moveToTrash(const std::vector<StorageCleanupFile>& files);

// Puts each trashed item back where it was, when nothing exists there, neither place is
// reached through a link and the item is unchanged in the Trash; the others stay in
// `remaining` with one text each. Never throws.
StorageRestoreResult restore(const std::vector<TrashedStorageFile>& items,
                             const ScanOptions& options = {});

// The text that reports a moved item found changed in the Trash; it stays listed for undo.
extern const char* const changedInTrashDescription;

}  // namespace tallowmere::AIStorageCleanup
