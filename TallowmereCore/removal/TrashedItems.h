#pragma once

#include <exception>
#include <string>
#include <vector>

#include "platform/PathRules.h"
#include "platform/Trash.h"
#include "removal/RemovalOptions.h"
#include "removal/StorageCleanupResult.h"

namespace tallowmere::AIStorageCleanup {

// Throws FileSystemError unless both paths of the undo record are absolute and standardised:
// only such paths are taken from a file that anyone may have edited.
void checkRecordedPaths(const TrashedStorageFile& item);

// Runs `act` on each item an undo record names, in order, until asked to stop. An item `act`
// fails on stays in `remaining` with one "name: reason" text in `errors`, unless the Trash no
// longer holds it: nothing is left to try again. The items not reached stay in `remaining`.
template <typename Act>
void forEachTrashedItem(const std::vector<TrashedStorageFile>& items, const RemovalOptions& options,
                        std::vector<TrashedStorageFile>& remaining,
                        std::vector<std::string>& errors, Act&& act) {
    for (const auto& item : items) {
        if (options.stopToken.stop_requested()) {
            remaining.push_back(item);
            continue;
        }
        try {
            act(item);
        } catch (const Trash::NoLongerInTrash& gone) {
            errors.push_back(PathRules::lastComponent(item.original.url) + ": " + gone.what());
        } catch (const std::exception& error) {
            remaining.push_back(item);
            errors.push_back(PathRules::lastComponent(item.original.url) + ": " + error.what());
        }
    }
}

}  // namespace tallowmere::AIStorageCleanup
