#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "measurement/Date.h"
#include "measurement/StorageLocation.h"
#include "removal/StorageCleanupFile.h"
#include "removal/StorageLocationSnapshot.h"

namespace tallowmere {

// What a review of one tool may remove, derived afresh from the locations a scan measures now
// (the catalog, the environment, the tracked folders), never from the review itself: a review
// read back from a file only selects, and anyone can have edited it.
class RemovalScope {
public:
    // The scope of `owner` among `measured` (what a scan of `home` measures now).
    RemovalScope(std::string owner, const std::filesystem::path& home,
                 const std::vector<StorageLocation>& measured);

    // True when the owner has no location at all among those measured: a tool that left no
    // storage, or a tracked folder that is no longer tracked.
    bool isEmpty() const { return m_folders.empty(); }

    // Why the folder of `snapshot` may not be removed whole, or nothing when it may: it must be
    // absolute and standardized, one of the owner's locations or inside one, and not broad.
    std::optional<std::string> refusalOfFolder(const StorageLocationSnapshot& snapshot) const;

    // Why `file` may not be removed on its own at `now`, or nothing when it may: it must lie
    // inside one of the owner's cache or log locations, named as its root with that location's
    // category, and be eligible there now; its "include recent" can only lift the age limits.
    std::optional<std::string> refusalOfFile(const StorageCleanupFile& file, Date now) const;

private:
    struct Folder {
        std::string path;
        std::string category;
    };

    std::string m_owner;
    std::vector<Folder> m_folders;
};

// True when `path` is absolute and already in standard form: no ".", "..", "//" or trailing
// "/". Only such paths are taken from a review or an undo record.
bool isStandardAbsolutePath(const std::filesystem::path& path);

}  // namespace tallowmere
