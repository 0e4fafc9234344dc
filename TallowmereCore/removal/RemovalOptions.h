#pragma once

#include <filesystem>
#include <functional>
#include <stop_token>

#include "measurement/AIStorageScanner.h"
#include "removal/StorageCleanupResult.h"

namespace tallowmere {

// How a removal or a restore runs.
struct RemovalOptions {
    // Asked between items: the item in hand is always finished and reported, so that nothing
    // leaves its place without a record.
    std::stop_token stopToken;
    // Sleep 2 ms after every 256 items of a folder's check.
    bool pauses = true;
    // Told of each item as soon as it lies in the Trash, on the calling thread, so that its
    // undo record can be kept before the next item moves.
    std::function<void(const TrashedStorageFile&)> onTrashed;

    // The moments of one item's removal or restore at which another process could interfere.
    enum class Step {
        found,    // its status read at its place; nothing moved yet
        taken,    // moved into the Trash or aside, unchecked; for a restore, moved back out
        checked,  // the moved item checked; about to be deleted, kept in the Trash or restored
    };
    // Told of each step with the item's path; tests act there as another process would.
    std::function<void(Step, const std::filesystem::path&)> onStep;

    void step(Step step, const std::filesystem::path& item) const {
        if (onStep) {
            onStep(step, item);
        }
    }

    // The options for checking one folder: never stopped half-way.
    ScanOptions checkOptions() const {
        ScanOptions options;
        options.pauses = pauses;
        return options;
    }
};

}  // namespace tallowmere
