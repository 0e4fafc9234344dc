#pragma once

#include <cstdint>
#include <filesystem>

namespace tallowmere::bench {

// What a synthetic home holds below its catalog locations' folders (those folders not counted).
struct SyntheticHomeSummary {
    std::int64_t files = 0;
    std::int64_t folders = 0;
    std::int64_t hardLinks = 0;
    std::int64_t symbolicLinks = 0;
    // Logical size of the files, each counted once.
    std::int64_t bytes = 0;

    // Every name a walk of all the locations meets.
    std::int64_t entries() const { return files + folders + hardLinks + symbolicLinks; }
};

// Fills `root` (made if absent; must be empty) with `files` files spread over the catalog
// locations' folders, plus about one hard link per 100 files and one symbolic link per 200.
// The same seed and count give the same names, sizes, links and tree on any system; dates fall
// in the 60 days before the call. Throws std::runtime_error or std::system_error naming what
// failed, leaving what was made so far.
SyntheticHomeSummary makeSyntheticHome(const std::filesystem::path& root, std::int64_t files,
                                       std::uint64_t seed);

}  // namespace tallowmere::bench
