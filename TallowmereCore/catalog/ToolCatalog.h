#pragma once

#include <string>
#include <vector>

#include "measurement/StorageLocation.h"

namespace tallowmere::AIStorageScanner {

// An editor whose folder under "Library/Application Support" is split into finer locations.
struct StorageEditor {
    std::string folder;
    std::string owner;
};

// The first block of the catalog: the 16 agent and model folders the system began with.
const std::vector<StorageLocation>& originalLocations();

// The second block of the catalog: 38 further agent, editor and settings folders.
const std::vector<StorageLocation>& additionalLocations();

// The 7 editors, in catalog order, whose application-data folders get cache and state rows.
const std::vector<StorageEditor>& storageEditors();

// The third block of the catalog: five cache sub-folders of every editor, grouped by editor.
const std::vector<StorageLocation>& editorCaches();

// Every built-in location (144), the four blocks in order; paths are distinct, nothing sorted.
const std::vector<StorageLocation>& locations();

// Every tool name the system knows, catalog and editor extensions alike, once each and in
// natural order; built anew on each call.
std::vector<std::string> supportedOwners();

}  // namespace tallowmere::AIStorageScanner
