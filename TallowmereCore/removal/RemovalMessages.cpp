#include "removal/RemovalMessages.h"

#include <algorithm>

namespace tallowmere::RemovalMessages {

namespace {

std::string items(std::int64_t count) {
    return std::to_string(count) + (count == 1 ? " item" : " items");
}

std::string firstThree(const std::vector<std::string>& errors) {
    std::string text;
    for (std::size_t index = 0; index < std::min<std::size_t>(errors.size(), 3); ++index) {
        text += (index == 0 ? "" : "\n") + errors[index];
    }
    return text;
}

}  // namespace

std::string preparationFailed(const std::string& reason) {
    return "Couldn’t prepare these locations for removal. Nothing was moved.\n\n" + reason;
}

std::optional<std::string> removalNotice(const StorageCleanupResult& result,
                                         StorageRemovalMethod method) {
    if (result.moved < 1) {
        return std::nullopt;
    }
    return method == StorageRemovalMethod::trash
               ? "Moved " + items(result.moved) + " to Trash."
               : "Permanently deleted " + items(result.moved) + ". No Undo.";
}

std::optional<std::string> removalError(const StorageCleanupResult& result,
                                        StorageRemovalMethod method) {
    if (result.errors.empty()) {
        return std::nullopt;
    }
    const char* consequence = method == StorageRemovalMethod::trash
                                  ? "Changed or unavailable folders were left in place."
                                  : "Changed folders were skipped. Filesystem errors may leave "
                                    "partly removed folders; scan again to check.";
    return std::to_string(result.errors.size()) + " items couldn’t be fully removed. " +
           consequence + "\n\n" + firstThree(result.errors);
}

std::optional<std::string> restoreNotice(const StorageRestoreResult& result) {
    if (result.restored < 1) {
        return std::nullopt;
    }
    const bool one = result.restored == 1;
    return "Restored " + items(result.restored) + " to the original location" + (one ? "." : "s.");
}

std::optional<std::string> restoreError(const StorageRestoreResult& result) {
    if (result.errors.empty()) {
        return std::nullopt;
    }
    return "Some items couldn’t be restored. Existing files and folders weren’t overwritten; you "
           "can review the remaining items in Trash.\n\n" +
           firstThree(result.errors);
}

}  // namespace tallowmere::RemovalMessages
