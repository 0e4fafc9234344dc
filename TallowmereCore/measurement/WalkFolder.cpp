#include "measurement/WalkFolder.h"

#include <algorithm>

#include "removal/AIStorageCleanup.h"

namespace tallowmere {

namespace {

// The folder part of a path ("/" for a path directly below the root).
std::string_view parentOf(std::string_view path) {
    const auto slash = path.rfind('/');
    return slash == 0 ? std::string_view("/") : path.substr(0, slash);
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

}  // namespace

bool WalkFolder::isNested(std::string_view name) const {
    return !nestedNames.empty() && std::ranges::find(nestedNames, name) != nestedNames.end();
}

std::string WalkFolder::pathOf(std::string_view name) const {
    std::string joined;
    joined.reserve(path.size() + 1 + name.size());
    joined = path;
    if (!joined.ends_with('/')) {
        joined += '/';
    }
    joined += name;
    return joined;
}

std::string WalkFolder::orderOf(std::uint32_t index) const {
    std::string extended;
    extended.reserve(order.size() + 5);
    extended = order;
    appendOrderIndex(extended, index);
    return extended;
}

WalkFolder childFolder(const WalkFolder& parent, std::string_view name, std::uint32_t index,
                       bool checksFiles, const std::vector<std::string>& nestedFolders) {
    WalkFolder child;
    child.path = parent.pathOf(name);
    child.order = parent.orderOf(index);
    child.protectedFolder =
        parent.protectedFolder || (checksFiles && AIStorageCleanup::isProtectedFolderName(name));
    if (!nestedFolders.empty()) {
        child.nestedNames = nestedNamesIn(child.path, nestedFolders);
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
