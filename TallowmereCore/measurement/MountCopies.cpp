#include "measurement/MountCopies.h"

#include <fcntl.h>

#include <algorithm>
#include <optional>

#include "platform/EntryStatus.h"
#include "platform/PathRules.h"

namespace tallowmere {

namespace {

// The part of `path` below `folder`: "" for the folder itself, nothing for a path outside it.
std::optional<std::string> restBelow(const std::string& path, const std::string& folder) {
    if (path == folder) {
        return std::string();
    }
    if (!PathRules::isInside(path, folder)) {
        return std::nullopt;
    }
    return path.substr(folder == "/" ? 1 : folder.size() + 1);
}

std::string joined(const std::string& folder, const std::string& rest) {
    if (rest.empty()) {
        return folder;
    }
    return folder.ends_with('/') ? folder + rest : folder + "/" + rest;
}

// True when the folder at `path` is `identity`, reached on the mount `mountId` without
// crossing into another.
bool isFolderOnMount(const std::string& path, const FileIdentity& identity, std::uint64_t mountId) {
    EntryStatus status;
    return readEntryStatus(AT_FDCWD, path.c_str(), status) && status.kind == EntryKind::directory &&
           status.identity == identity && status.mountId == mountId;
}

// Where a walk enters a mount: at a location's folder, or at a mount point inside one.
struct MountEntry {
    std::string path;
    const MountRecord* mount = nullptr;
    std::string root;  // the folder at `path`, as a path inside its file system
};

std::optional<MountEntry> locationEntry(const LocationScope& scope,
                                        const std::vector<MountRecord>& mounts) {
    const auto mount = std::ranges::find(mounts, scope.rootStatus.mountId, &MountRecord::id);
    if (scope.rootStatus.mountId == 0 || mount == mounts.end()) {
        return std::nullopt;
    }
    std::string path(scope.url.native());
    const auto rest = restBelow(path, mount->mountPoint);
    if (!rest) {
        return std::nullopt;
    }
    return MountEntry{std::move(path), &*mount, joined(mount->root, *rest)};
}

class CopyFinder {
public:
    CopyFinder(const std::vector<const LocationScope*>& scopes,
               const std::vector<MountRecord>& mounts)
        : m_scopes(scopes), m_mounts(mounts) {
        for (const LocationScope* scope : scopes) {
            m_entries.push_back(locationEntry(*scope, mounts));
        }
    }

    std::vector<std::string> copiesIn(std::size_t location) const {
        std::vector<std::string> copies;
        const auto& own = m_entries[location];
        if (!own) {
            return copies;
        }
        addLocationCopies(*own, copies);
        for (const MountRecord& mount : m_mounts) {
            if (!PathRules::isInside(mount.mountPoint, own->path) ||
                passesOver(location, mount.mountPoint)) {
                continue;
            }
            const MountEntry inner{mount.mountPoint, &mount, mount.root};
            if (holdsMeasuredFolder(inner)) {
                copies.push_back(mount.mountPoint);
            } else {
                addLocationCopies(inner, copies);
            }
        }
        return copies;
    }

private:
    // True for a path inside another location's folder, which the walk passes over.
    bool passesOver(std::size_t location, const std::string& path) const {
        return std::ranges::any_of(m_scopes[location]->nestedFolders, [&](const auto& nested) {
            return path == nested || PathRules::isInside(path, nested);
        });
    }

    // The locations' folders below `entry`, on another mount of its file system, as its
    // walk meets them: each location measures its own.
    void addLocationCopies(const MountEntry& entry, std::vector<std::string>& copies) const {
        for (std::size_t other = 0; other < m_scopes.size(); ++other) {
            const auto& location = m_entries[other];
            if (!location || !sameFileSystemElsewhere(*location, entry)) {
                continue;
            }
            const auto rest = restBelow(location->root, entry.root);
            if (!rest || rest->empty()) {
                continue;
            }
            auto copy = joined(entry.path, *rest);
            if (isFolderOnMount(copy, m_scopes[other]->rootStatus.identity, entry.mount->id)) {
                copies.push_back(std::move(copy));
            }
        }
    }

    // True when the mount `inner` holds a folder that a location measures on its own mount:
    // that location counts it, not the mount.
    bool holdsMeasuredFolder(const MountEntry& inner) const {
        std::optional<FileIdentity> innerRoot;
        for (std::size_t other = 0; other < m_scopes.size(); ++other) {
            const auto& location = m_entries[other];
            if (!location || !sameFileSystemElsewhere(*location, inner)) {
                continue;
            }
            const auto rest = restBelow(inner.root, location->root);
            if (!rest) {
                continue;
            }
            const auto source = joined(location->path, *rest);
            if (passesOver(other, source)) {
                continue;
            }
            if (!innerRoot) {
                EntryStatus status;
                // A mount hidden under another is never met.
                if (!readEntryStatus(AT_FDCWD, inner.path.c_str(), status) ||
                    status.mountId != inner.mount->id) {
                    return false;
                }
                innerRoot = status.identity;
            }
            if (isFolderOnMount(source, *innerRoot, location->mount->id)) {
                return true;
            }
        }
        return false;
    }

    static bool sameFileSystemElsewhere(const MountEntry& first, const MountEntry& second) {
        return first.mount->device == second.mount->device && first.mount->id != second.mount->id;
    }

    const std::vector<const LocationScope*>& m_scopes;
    const std::vector<MountRecord>& m_mounts;
    std::vector<std::optional<MountEntry>> m_entries;  // each location's own
};

}  // namespace

std::vector<std::vector<std::string>> mountCopies(const std::vector<const LocationScope*>& scopes,
                                                  const std::vector<MountRecord>& mounts) {
    const CopyFinder finder(scopes, mounts);
    std::vector<std::vector<std::string>> copies;
    for (std::size_t location = 0; location < scopes.size(); ++location) {
        copies.push_back(finder.copiesIn(location));
    }
    return copies;
}

}  // namespace tallowmere
