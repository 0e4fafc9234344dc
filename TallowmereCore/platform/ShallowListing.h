#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/EntryStatus.h"

namespace tallowmere {

// One visible entry of a folder and its kind as far as the directory entry tells
// (`unknown` when the file system does not say).
struct ListedEntry {
    std::string name;
    EntryKind kind = EntryKind::unknown;
};

// The entries of `folder` whose names do not begin with ".", in the order the file system
// lists them; nothing when the folder cannot be opened or read. Never follows a symbolic link
// at `folder` itself.
std::optional<std::vector<ListedEntry>> listVisibleEntries(const std::filesystem::path& folder);

// The kind of `name` inside `folder`, read without following a link; `unknown` when it
// cannot be read.
EntryKind entryKindAt(const std::filesystem::path& folder, const std::string& name);

}  // namespace tallowmere
