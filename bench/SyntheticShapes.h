#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace tallowmere::bench {

// Locations whose files are named and sized alike.
enum class LocationKind { general, logs, models };

// A file name: the prefix, a number unique in its location, the suffix.
struct NamePattern {
    std::uint64_t weight;
    std::string_view prefix;
    std::string_view suffix;
};

// File sizes drawn evenly from `smallest` to `largest` bytes, both included.
struct SizeBand {
    std::uint64_t weight;
    std::int64_t smallest;
    std::int64_t largest;
};

// The start of a folder name; a number unique in its location follows.
struct FolderWord {
    std::uint64_t weight;
    std::string_view word;
};

// How many files a location has per folder on average.
struct FolderFill {
    std::uint64_t weight;
    std::int64_t files;
};

// "Logs" names logs, the model and ML categories name models, all others are general.
LocationKind kindOf(const std::string& category);

// A location's share of the files, before its own random factor: model stores, caches and
// histories are where homes grow.
std::uint64_t categoryWeight(const std::string& category);

// File names of such locations, with weights that add up to 1000.
std::span<const NamePattern> namesFor(LocationKind kind);

// Mostly 0-16 KB; model stores have a longer tail into gigabytes.
std::span<const SizeBand> sizesFor(LocationKind kind);

// Folder names alike in every location, a few with non-ASCII letters or a space.
std::span<const FolderWord> folderWords();

// From a handful of files per folder to a few dozen.
std::span<const FolderFill> folderFills();

}  // namespace tallowmere::bench
