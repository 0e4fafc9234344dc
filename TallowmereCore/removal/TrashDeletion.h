#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "removal/RemovalOptions.h"
#include "removal/StorageCleanupResult.h"

namespace tallowmere::AIStorageCleanup {

// What deleting trashed items for good did: how many went, the disk space that released, and
// the items (with one "name: reason" text each) that stay in the Trash for a later attempt.
struct StorageTrashDeletionResult {
    std::int64_t deleted = 0;
    // Allocated bytes released: a file's blocks only when no other name of it remained, and
    // nothing for an item left partly deleted.
    std::int64_t bytesFreed = 0;
    std::vector<TrashedStorageFile> remaining;
    std::vector<std::string> errors;
};

// Deletes each trashed item for good when it lies in one of this user's trashes whose record
// names its original place, and is, once taken aside there, unchanged since it was trashed: a
// file the same file, a folder exactly as reviewed, of which only the reviewed items go. Its
// trash record goes with it. Anything else in the Trash is never touched; an item that changed
// goes back under its trash name. An item the Trash no longer holds is reported and dropped;
// the others stay in `remaining` with one text each. Stops between items when asked, the rest
// kept in `remaining`. Never throws.
StorageTrashDeletionResult deleteFromTrash(const std::vector<TrashedStorageFile>& items,
                                           const RemovalOptions& options = {});

}  // namespace tallowmere::AIStorageCleanup
