#pragma once

#include <vector>

#include "removal/RemovalOptions.h"
#include "removal/StorageCleanupFile.h"
#include "removal/StorageCleanupResult.h"
#include "removal/StorageRemovalMethod.h"

namespace tallowmere::AIStorageCleanup {

// Removes each file that is still inside its location, reached without links, eligible and
// exactly as scanned. Each is first taken from its place (into the Trash, or aside for
// deletion) and the taken file is checked; one that is not the scanned file goes back. The
// others stay, each with one "name: reason" text. A path listed twice is handled once. Stops
// between files when asked. Never throws.
StorageCleanupResult remove(const std::vector<StorageCleanupFile>& files,
                            StorageRemovalMethod method, const RemovalOptions& options = {});

StorageCleanupResult moveToTrash(const std::vector<StorageCleanupFile>& files,
                                 const RemovalOptions& options = {});

// Puts each trashed item back where it was, when it lies in one of this user's trashes whose
// record names that place, nothing exists there, the place is reached without links and the
// item is unchanged in the Trash; the others stay in `remaining` with one text each. Stops
// between items when asked. Never throws.
StorageRestoreResult restore(const std::vector<TrashedStorageFile>& items,
                             const RemovalOptions& options = {});

}  // namespace tallowmere::AIStorageCleanup
