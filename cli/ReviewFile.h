#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "catalog/StorageLayout.h"
#include "removal/LocationRemovalReview.h"
#include "removal/StorageCleanupResult.h"

namespace tallowmere::cli {

// A review or undo file that cannot be used: damaged, from another version, or edited after
// it was written. Nothing is removed or restored on its account.
struct RecordFileError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// A review as its file keeps it: the review, and the layout its scan placed the catalog in,
// which the removal needs to derive again what the review may touch.
struct ReviewRecord {
    LocationRemovalReview review;
    StorageLayout layout = nativeStorageLayout();
};

// The review as the JSON object `review` writes: version, id, owner, layout, locations,
// affected tools, files, then a checksum of everything before it.
std::string encodeReview(const ReviewRecord& record);
// Throws RecordFileError naming `file` when its text is not a review written by encodeReview,
// or names a path that is not absolute and standardized.
ReviewRecord decodeReview(std::string_view text, const std::filesystem::path& file);

// The undo records as {"version":1,"items":[…]}, with a checksum like a review's. Decoding
// throws RecordFileError as for a review.
std::string encodeUndoItems(const std::vector<TrashedStorageFile>& items);
std::vector<TrashedStorageFile> decodeUndoItems(std::string_view text,
                                                const std::filesystem::path& file);

// Reads `file` whole (at most 256 MiB); throws RecordFileError when it cannot.
std::string readRecordFile(const std::filesystem::path& file);

}  // namespace tallowmere::cli
