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

// Appends `index` so that byte order is number order and no index's bytes begin another's:
// one byte below 128, two below 16,512, else five. Most orders then stay short enough for a
// string to hold them without allocating.
void appendOrderIndex(std::string& order, std::uint32_t index) {
    constexpr std::uint32_t oneByteEnd = 0x80;
    constexpr std::uint32_t twoBytesEnd = oneByteEnd + 0x4000;
    if (index < oneByteEnd) {
        order += static_cast<char>(index);
    } else if (index < twoBytesEnd) {
        const std::uint32_t offset = index - oneByteEnd;
        order += static_cast<char>(0x80 | (offset >> 8));
        order += static_cast<char>(offset & 0xFF);
    } else {
        order += static_cast<char>(0xC0);
        for (int shift = 24; shift >= 0; shift -= 8) {
            order += static_cast<char>((index >> shift) & 0xFF);
        }
    }
}

// The folders from the nearest one that keeps its path and order down to `folder`, that one
// first.
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

// What `kept` holds for `folder`: its own where it keeps it; else the nearest kept one's, with
// `append` applied for each folder on the way down.
template <typename Append>
std::string madeFromKept(const WalkFolder& folder, std::string WalkFolder::*kept, Append append) {
    if (folder.depth <= WalkFolder::keptDepth) {
        return folder.*kept;
    }
    const auto chain = chainTo(folder);
    std::string made = chain.front()->*kept;
    for (const WalkFolder* below : chain | std::views::drop(1)) {
        append(made, *below);
    }
    return made;
}

}  // namespace

std::string WalkFolder::path() const {
    return madeFromKept(
        *this, &WalkFolder::keptPath,
        [](std::string& path, const WalkFolder& below) { appendName(path, below.name); });
}

std::string WalkFolder::order() const {
    return madeFromKept(
        *this, &WalkFolder::keptOrder,
        [](std::string& order, const WalkFolder& below) { appendOrderIndex(order, below.index); });
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

std::string WalkFolder::orderOf(std::uint32_t entryIndex) const {
    std::string extended;
    if (depth <= keptDepth) {
        extended.reserve(keptOrder.size() + 5);
        extended = keptOrder;
    } else {
        extended = order();
    }
    appendOrderIndex(extended, entryIndex);
    return extended;
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
                       std::uint32_t index, bool checksFiles,
                       const std::vector<std::string>& nestedFolders) {
    WalkFolder child;
    child.parent = parent;
    child.name = name;
    child.index = index;
    child.depth = parent->depth + 1;
    child.protectedFolder =
        parent->protectedFolder || (checksFiles && AIStorageCleanup::isProtectedFolderName(name));
    if (child.depth <= WalkFolder::keptDepth) {
        child.keptPath = parent->pathOf(name);
        child.keptOrder = parent->orderOf(index);
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
