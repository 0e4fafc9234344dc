#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tallowmere {

// A folder of one location as a walk meets it.
struct WalkFolder {
    std::string path;
    // Where the folder stands in the order one thread walks its location: the listing index of
    // each folder on the way down from the location folder, written so that comparing the
    // bytes of two orders compares when a walk meets them.
    std::string order;
    // True inside a folder whose files are never cleaned one by one.
    bool protectedFolder = false;
    // Names of entries that are other locations' folders, which this location passes over.
    std::vector<std::string> nestedNames;

    bool isNested(std::string_view name) const;
    std::string pathOf(std::string_view name) const;
    // The order of this folder's entry at `index` in its listing.
    std::string orderOf(std::uint32_t index) const;
};

// The folder `name`, met at `index` in `parent`'s listing, of a location whose other
// locations' folders inside it are `nestedFolders`.
WalkFolder childFolder(const WalkFolder& parent, std::string_view name, std::uint32_t index,
                       bool checksFiles, const std::vector<std::string>& nestedFolders);

// The names of `nestedFolders` whose parent folder is `folder`.
std::vector<std::string> nestedNamesIn(const std::string& folder,
                                       const std::vector<std::string>& nestedFolders);

}  // namespace tallowmere
