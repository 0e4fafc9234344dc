#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <stop_token>
#include <string>
#include <vector>

#include "catalog/StorageLayout.h"
#include "measurement/StorageLocation.h"

namespace tallowmere::AIStorageScanner {

using Environment = std::map<std::string, std::string>;

// The locations one scan measures for the user whose home is `home` (absolute, links
// resolved): the catalog placed for `layout` and moved by the XDG variables of `environment`,
// the AI extension folders found in the editors and editor servers, and their task and
// checkpoint folders, without repeated folders. Throws ScanCancelled when a stop is requested
// during the editor walk.
std::vector<StorageLocation> discoverLocations(const std::filesystem::path& home,
                                               const Environment& environment,
                                               StorageLayout layout = nativeStorageLayout(),
                                               std::stop_token stopToken = {});

// The built-in catalog alone, placed for `layout` and moved by the XDG variables of
// `environment`: the folders a tracked folder must not repeat.
std::vector<StorageLocation> placedCatalog(const Environment& environment, StorageLayout layout);

// What one scan measures: the locations `discoverLocations` finds, then one custom location
// per tracked folder (absolute, standardized), in the order given. Both front ends measure
// this, and a removal derives from it what a review may remove. Throws ScanCancelled as
// discoverLocations does.
std::vector<StorageLocation> measuredLocations(const std::filesystem::path& home,
                                               const Environment& environment, StorageLayout layout,
                                               const std::vector<std::string>& trackedFolders,
                                               std::stop_token stopToken = {});

// The visible sub-folders of `folder` among its first `limit` entries in byte order (files
// count toward the limit), leaving out symbolic links; nothing when `folder` lies behind a
// symbolic link or cannot be listed.
std::vector<std::filesystem::path> safeDirectories(const std::filesystem::path& folder,
                                                   std::size_t limit);

}  // namespace tallowmere::AIStorageScanner
