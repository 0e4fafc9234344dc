#include "removal/StorageCleanupFile.h"

namespace tallowmere {

std::string_view nameOf(CleanupCategory category) {
    return category == CleanupCategory::cache ? "Cache" : "Logs";
}

std::optional<CleanupCategory> cleanupCategoryNamed(std::string_view name) {
    if (name == "Cache") {
        return CleanupCategory::cache;
    }
    if (name == "Logs") {
        return CleanupCategory::logs;
    }
    return std::nullopt;
}

}  // namespace tallowmere
