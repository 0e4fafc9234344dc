#pragma once

#include <cstdint>
#include <filesystem>

#include "SyntheticHome.h"

namespace tallowmere::bench {

// Homes of the shapes that strain a scan beyond plain files, each under catalog locations:
//
// - every file of a mixed home (makeSyntheticHome) given a second name beside it, as package
//   and environment stores keep their files;
// - one cache folder of `files` files (~/.cache/huggingface/hub/wide);
// - a chain `files` folders deep, one file in each (~/.codex/sessions/d/d/…).
//
// Files are sparse, of a few kilobytes each. Throws std::system_error naming what failed.
SyntheticHomeSummary makeLinkedHome(const std::filesystem::path& root, std::int64_t files,
                                    std::uint64_t seed);
SyntheticHomeSummary makeWideHome(const std::filesystem::path& root, std::int64_t files);
SyntheticHomeSummary makeDeepHome(const std::filesystem::path& root, std::int64_t depth);

}  // namespace tallowmere::bench
