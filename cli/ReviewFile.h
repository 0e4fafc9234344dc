#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "removal/LocationRemovalReview.h"
#include "removal/StorageCleanupResult.h"

namespace tallowmere::cli {

// A review or undo file that cannot be used: damaged, from another version, or edited after
// it was written. Nothing is removed or restored on its account.
struct RecordFileError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The review as the JSON object `review` writes: version, id, owner, locations, affected
// tools, files, then a checksum of everything before it.
std::string encodeReview(const LocationRemovalReview& review);
// Throws RecordFileError naming `file` when its text is not a review written by encodeReview.
LocationRemovalReview decodeReview(std::string_view text, const std::filesystem::path& file);

// The undo records as {"version":1,"items":[…]}, with a checksum like a review's.
std::string encodeUndoItems(const std::vector<TrashedStorageFile>& items);
std::vector<TrashedStorageFile> decodeUndoItems(std::string_view text,
                                                const std::filesystem::path& file);

// Reads `file` whole (at most 256 MiB); throws RecordFileError when it cannot.
std::string readRecordFile(const std::filesystem::path& file);

}  // namespace tallowmere::cli
