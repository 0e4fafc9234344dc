#pragma once

#include <set>
#include <string>
#include <vector>

#include "measurement/StorageFinding.h"
#include "measurement/StorageTool.h"
#include "removal/StorageCleanupFile.h"

namespace tallowmere {

// What one review removes: whole folders for ordinary locations, and single eligible files
// for "Cache" and "Logs" locations, whose folders are never removed whole. Pure values.
struct StorageRemovalPlan {
    // Folders removed whole, none inside another, in the order of the tool's findings.
    std::vector<StorageFinding> folders;
    // At most 500 files, none inside `folders`, each path once, largest allocated bytes first.
    std::vector<StorageCleanupFile> files;

    // True when the plan removes nothing.
    bool isEmpty() const;

    // True for a "Cache" or "Logs" location, whose files are reviewed one by one.
    static bool usesEligibleFiles(const StorageFinding& finding);

    // The finding's eligible files as the scan listed them, recent ones included on request.
    static std::vector<StorageCleanupFile> candidates(const StorageFinding& finding,
                                                      bool includeRecent);

    // False only for a "Cache" or "Logs" location that has no candidates.
    static bool canSelect(const StorageFinding& finding, bool includeRecent);

    // The plan for the findings of `tool` whose ids are in `selectedIDs` and that can be
    // selected; unknown ids are ignored.
    static StorageRemovalPlan make(const StorageTool& tool,
                                   const std::set<std::string>& selectedIDs, bool includeRecent);
};

}  // namespace tallowmere
