#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/FilePath.h"

namespace tallowmere {

// A folder of one location as a walk meets it. A walk in order holds every folder above the
// one it is in, so near the top of the tree a folder keeps its whole path and order, and
// deeper down only its name and place, the rest made from the folders above when asked for:
// a chain thousands of folders deep costs what its names do.
struct WalkFolder {
    // How deep folders keep their whole path and order.
    static constexpr std::size_t keptDepth = 64;

    std::shared_ptr<const WalkFolder> parent;  // none for the location's own folder
    std::string name;                          // in the parent; none for the location's own
    std::uint32_t index = 0;                   // in the parent's listing
    std::size_t depth = 0;                     // 0 for the location's own folder
    // True inside a folder whose files are never cleaned one by one.
    bool protectedFolder = false;
    // Names of entries that are other locations' folders, which this location passes over.
    std::vector<std::string> nestedNames;
    // The path and order, down to keptDepth.
    std::string keptPath;
    std::string keptOrder;

    std::string path() const;
    // Where the folder stands in the order one thread walks its location: the listing index of
    // each folder on the way down from the location folder, written so that comparing the
    // bytes of two orders compares when a walk meets them.
    std::string order() const;

    bool isNested(std::string_view name) const;
    std::string pathOf(std::string_view name) const;
    FilePath filePathOf(std::string_view name) const;
    // The order of this folder's entry at `index` in its listing.
    std::string orderOf(std::uint32_t index) const;
};

// A location's own folder at `path`.
WalkFolder locationFolder(std::string path, bool protectedFolder,
                          const std::vector<std::string>& nestedFolders);

// The folder `name`, met at `index` in `parent`'s listing, of a location whose other
// locations' folders inside it are `nestedFolders`.
WalkFolder childFolder(const std::shared_ptr<const WalkFolder>& parent, std::string_view name,
                       std::uint32_t index, bool checksFiles,
                       const std::vector<std::string>& nestedFolders);

// The names of `nestedFolders` whose parent folder is `folder`.
std::vector<std::string> nestedNamesIn(const std::string& folder,
                                       const std::vector<std::string>& nestedFolders);

}  // namespace tallowmere
