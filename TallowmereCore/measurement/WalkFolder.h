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
// one it is in, so near the top of the tree a folder keeps its whole path, and deeper down
// only its name, the rest made from the folders above when asked for: a chain thousands of
// folders deep costs what its names do.
struct WalkFolder {
    // How deep folders keep their whole path.
    static constexpr std::size_t keptDepth = 64;

    std::shared_ptr<const WalkFolder> parent;  // none for the location's own folder
    std::string name;                          // in the parent; none for the location's own
    // Where one thread walking the location in order meets it: the number of entries met up
    // to it, itself included; 0 for the location's own folder, met before any entry.
    std::uint64_t position = 0;
    std::size_t depth = 0;  // 0 for the location's own folder
    // True inside a folder whose files are never cleaned one by one.
    bool protectedFolder = false;
    // Names of entries that are other locations' folders, which this location passes over.
    std::vector<std::string> nestedNames;
    // The path, down to keptDepth.
    std::string keptPath;

    std::string path() const;

    bool isNested(std::string_view name) const;
    std::string pathOf(std::string_view name) const;
    FilePath filePathOf(std::string_view name) const;
};

// A location's own folder at `path`.
WalkFolder locationFolder(std::string path, bool protectedFolder,
                          const std::vector<std::string>& nestedFolders);

// The folder `name` in `parent`, met at `position` of a location whose other locations'
// folders inside it are `nestedFolders`.
WalkFolder childFolder(const std::shared_ptr<const WalkFolder>& parent, std::string_view name,
                       std::uint64_t position, bool checksFiles,
                       const std::vector<std::string>& nestedFolders);

// The names of `nestedFolders` whose parent folder is `folder`.
std::vector<std::string> nestedNamesIn(const std::string& folder,
                                       const std::vector<std::string>& nestedFolders);

}  // namespace tallowmere
