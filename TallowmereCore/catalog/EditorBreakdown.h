#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "measurement/StorageLocation.h"

namespace tallowmere::AIStorageScanner {

// An AI extension recognised by the name of its folder in an editor's "globalStorage" folder.
struct EditorExtension {
    std::string id;  // lower case
    std::string owner;
};

// The fourth block of the catalog (55 rows): editor state folders, extension roots, agent
// sub-folders and Bob's logs, each finer than the folder it lies in.
const std::vector<StorageLocation>& breakdownLocations();

// The 9 recognised editor extensions; the first row whose id matches wins.
const std::vector<EditorExtension>& editorExtensions();

// The owners whose extension folders get "Task history" and "Checkpoints" rows, in order.
const std::vector<std::string>& extensionBreakdownOwners();

// The location of `folder`, found in the "globalStorage" folder of the editor folder
// `editorFolder` (and of `profile`, if any), when its name (ASCII case-insensitively) is a
// recognised extension; otherwise none. The location's path is `folder` as given.
std::optional<StorageLocation> attributeEditorExtension(const std::filesystem::path& folder,
                                                        const std::string& editorFolder,
                                                        const std::optional<std::string>& profile);

// As `attributeEditorExtension`, for a folder in the "globalStorage" folder of a local editor
// server folder `serverFolder` (such as ".vscode-server").
std::optional<StorageLocation> attributeServerExtension(const std::filesystem::path& folder,
                                                        const std::string& serverFolder);

// The "/tasks" and "/checkpoints" locations of every extension-data location in `discovered`
// owned by one of `extensionBreakdownOwners`, in input order; nothing is checked on disk.
std::vector<StorageLocation> extensionBreakdown(const std::vector<StorageLocation>& discovered);

}  // namespace tallowmere::AIStorageScanner
