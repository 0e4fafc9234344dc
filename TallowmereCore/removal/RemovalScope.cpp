#include "removal/RemovalScope.h"

#include <algorithm>

#include "platform/PathRules.h"
#include "removal/AIStorageCleanup.h"
#include "removal/BroadLocation.h"
#include "removal/RemovalErrors.h"

namespace tallowmere {

namespace {

constexpr char notStandard[] =
    "Its path is not absolute and standardised, so the review was not used for it.";

}  // namespace

bool isStandardAbsolutePath(const std::filesystem::path& path) {
    return path.is_absolute() && PathRules::standardized(path) == path &&
           path.native().find("//") == std::string::npos;
}

RemovalScope::RemovalScope(std::string owner, const std::filesystem::path& home,
                           const std::vector<StorageLocation>& measured)
    : m_owner(std::move(owner)) {
    for (const auto& location : measured) {
        if (location.owner == m_owner) {
            m_folders.push_back({location.url(home).native(), location.category});
        }
    }
}

std::optional<std::string> RemovalScope::refusalOfFolder(
    const StorageLocationSnapshot& snapshot) const {
    const auto& path = snapshot.url;
    if (!isStandardAbsolutePath(path)) {
        return notStandard;
    }
    const bool inScope = std::ranges::any_of(m_folders, [&](const Folder& folder) {
        return path.native() == folder.path || PathRules::isInside(path.native(), folder.path);
    });
    if (!inScope) {
        return "It is not a storage location of " + m_owner +
               ", nor inside one, so it was left "
               "in place.";
    }
    if (StorageLocationTrash::isBroadLocation(path)) {
        return ReviewError::description(ReviewError::Kind::broadLocation);
    }
    return std::nullopt;
}

std::optional<std::string> RemovalScope::refusalOfFile(const StorageCleanupFile& file,
                                                       Date now) const {
    const std::filesystem::path path = file.entry.url;
    const std::filesystem::path root = file.root;
    if (!isStandardAbsolutePath(path) || !isStandardAbsolutePath(root)) {
        return notStandard;
    }
    const auto location = std::ranges::find_if(m_folders, [&](const Folder& folder) {
        return folder.path == root.native() && folder.category == nameOf(file.category);
    });
    if (location == m_folders.end() || !PathRules::isInside(path.native(), root.native())) {
        return "It is not inside a cache or log location of " + m_owner +
               ", so it was left in place.";
    }
    if (!AIStorageCleanup::eligible(path, file.entry.modified, location->category, now,
                                    file.includesRecent)) {
        return FileTrashError().what();
    }
    return std::nullopt;
}

}  // namespace tallowmere
