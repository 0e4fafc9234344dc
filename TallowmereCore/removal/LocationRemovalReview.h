#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "measurement/AIStorageScanner.h"
#include "measurement/StorageTool.h"
#include "removal/RemovalOptions.h"
#include "removal/RemovalScope.h"
#include "removal/StorageCleanupFile.h"
#include "removal/StorageCleanupResult.h"
#include "removal/StorageLocationSnapshot.h"
#include "removal/StorageRemovalMethod.h"

namespace tallowmere {

// A removal the user is about to confirm: the whole folders (each fingerprinted when the
// review was prepared) and the single cache and log files of one tool.
struct LocationRemovalReview {
    std::string id;  // a random UUID, new for every review
    std::string owner;
    std::vector<StorageLocationSnapshot> locations;
    std::vector<std::string> affectedTools;  // other tools with a folder inside those folders
    std::vector<StorageCleanupFile> files;

    std::int64_t allocatedBytes() const;
    // "1 cache/log file · 2 whole folders"; empty when nothing is reviewed.
    std::string selectionSummary() const;

    // The review of the locations `selectedIDs` of the tool owned by `owner` among `tools`:
    // the removal plan, the other tools it touches, a snapshot of every planned folder and the
    // status change time of every planned file. Nothing when no such tool exists or the plan
    // is empty. Throws what a snapshot throws.
    static std::optional<LocationRemovalReview> prepare(const std::vector<StorageTool>& tools,
                                                        const std::string& owner,
                                                        const std::set<std::string>& selectedIDs,
                                                        bool includeRecent,
                                                        const ScanOptions& options = {});
};

// Carries out `review` within `scope`: removes its folders, then its files, and combines the
// results (folder items and errors first). A record the scope refuses is left alone with one
// text, whatever the review says. Never throws.
StorageCleanupResult removeReviewed(const LocationRemovalReview& review,
                                    StorageRemovalMethod method, const RemovalScope& scope,
                                    const RemovalOptions& options = {});

// The owners of the tools in `tools`, other than `owner`, that keep a folder strictly inside
// one of `folders`; sorted, each once.
std::vector<std::string> affectedToolsOf(const std::vector<StorageTool>& tools,
                                         const std::string& owner,
                                         const std::vector<StorageFinding>& folders);

}  // namespace tallowmere
