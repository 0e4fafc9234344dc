#pragma once

#include <filesystem>
#include <string>

#include "ReviewReach.h"
#include "removal/LocationRemovalReview.h"

namespace tallowmere::cli {

// The review as a person reads it before confirming: the selection, the warning, the file
// groups, the folders with their guidance and item counts, and the total on disk; and, when
// the review could not take every eligible file, how many it took of how many.
std::string reviewSheet(const LocationRemovalReview& review, const ReviewReach& reach,
                        const std::filesystem::path& home);

// "1 cache/log file · 2 whole folders from Codex (3 MB) will be deleted without going to
// Trash. …": the question asked before a permanent deletion.
std::string permanentConfirmation(const LocationRemovalReview& review);

}  // namespace tallowmere::cli
