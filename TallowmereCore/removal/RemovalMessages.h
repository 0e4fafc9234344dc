#pragma once

#include <optional>
#include <string>
#include <vector>

#include "removal/StorageCleanupResult.h"
#include "removal/StorageRemovalMethod.h"

namespace tallowmere::RemovalMessages {

// "Couldn’t prepare these locations for removal. Nothing was moved." and the reason.
std::string preparationFailed(const std::string& reason);

// What a removal that moved something tells the user ("Moved 2 items to Trash."); nothing
// when it moved nothing.
std::optional<std::string> removalNotice(const StorageCleanupResult& result,
                                         StorageRemovalMethod method);

// The alert for a removal with errors: their count, what happened to such items, and the
// first three errors; nothing without errors.
std::optional<std::string> removalError(const StorageCleanupResult& result,
                                        StorageRemovalMethod method);

// "Restored 2 items to the original locations."; nothing when nothing came back.
std::optional<std::string> restoreNotice(const StorageRestoreResult& result);

// The alert for an undo with errors, with the first three; nothing without errors.
std::optional<std::string> restoreError(const StorageRestoreResult& result);

}  // namespace tallowmere::RemovalMessages
