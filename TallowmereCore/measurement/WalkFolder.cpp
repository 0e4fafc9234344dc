#include "measurement/WalkFolder.h"

#include <algorithm>
#include <ranges>

#include "removal/AIStorageCleanup.h"

namespace tallowmere {

namespace {

// The folder part of a path ("/" for a path directly below the root).
std::string_view parentOf(std::string_view path) {
    const auto slash = path.rfind('/');
    return slash == 0 ? std::string_view("/") : path.substr(0, slash);
}

void appendName(std::string& path, std::string_view name) {
    if (!path.ends_with('/')) {
        path += '/';
    }
    path += name;
}

// The folders from the nearest one that keeps its path down to `folder`, that one first.
std::vector<const WalkFolder*> chainTo(const WalkFolder& folder) {
    std::vector<const WalkFolder*> chain;
    for (const WalkFolder* next = &folder;; next = next->parent.get()) {
        chain.push_back(next);
        if (next->depth <= WalkFolder::keptDepth) {
            break;
        }
    }
    std::ranges::reverse(chain);
    return chain;
}

}  // namespace

std::string WalkFolder::path() const {
    if (depth <= keptDepth) {
        return keptPath;
    }
    const auto chain = chainTo(*this);
    std::string made = chain.front()->keptPath;
    for (const WalkFolder* below : chain | std::views::drop(1)) {
        appendName(made, below->name);
    }
    return made;
}

bool WalkFolder::isNested(std::string_view entryName) const {
    return !nestedNames.empty() && std::ranges::find(nestedNames, entryName) != nestedNames.end();
}

std::string WalkFolder::pathOf(std::string_view entryName) const {
    std::string joined;
    if (depth <= keptDepth) {
        // The walk makes one for every folder it enters: one allocation, not two.
        joined.reserve(keptPath.size() + 1 + entryName.size());
        joined = keptPath;
    } else {
        joined = path();
    }
    appendName(joined, entryName);
    return joined;
}

FilePath WalkFolder::filePathOf(std::string_view entryName) const {
    return depth <= keptDepth ? FilePath::joined(keptPath, entryName) : FilePath(pathOf(entryName));
}

WalkFolder locationFolder(std::string path, bool protectedFolder,
                          const std::vector<std::string>& nestedFolders) {
    WalkFolder root;
    root.nestedNames = nestedNamesIn(path, nestedFolders);
    root.protectedFolder = protectedFolder;
    root.keptPath = std::move(path);
    return root;
}

WalkFolder childFolder(const std::shared_ptr<const WalkFolder>& parent, std::string_view name,
                       std::uint64_t position, bool checksFiles,
                       const std::vector<std::string>& nestedFolders) {
    WalkFolder child;
    child.parent = parent;
    child.name = name;
    child.position = position;
    child.depth = parent->depth + 1;
    child.protectedFolder =
        parent->protectedFolder || (checksFiles && AIStorageCleanup::isProtectedFolderName(name));
    if (child.depth <= WalkFolder::keptDepth) {
        child.keptPath = parent->pathOf(name);
    }
    if (!nestedFolders.empty()) {
        child.nestedNames = nestedNamesIn(child.path(), nestedFolders);
    }
    return child;
}

std::vector<std::string> nestedNamesIn(const std::string& folder,
                                       const std::vector<std::string>& nestedFolders) {
    std::vector<std::string> names;
    for (const auto& path : nestedFolders) {
        if (parentOf(path) == folder) {
            names.push_back(path.substr(path.rfind('/') + 1));
        }
    }
    return names;
}

}  // namespace tallowmere
