#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "measurement/Date.h"
#include "measurement/StorageScan.h"

// The summary of the last finished scan, kept in a JSON file so that the next start can show it
// while a new scan runs. It holds the sizes and counts of each finding, never the file lists,
// and is only accepted for the same home folder and custom folders while at most a week old.
namespace tallowmere::StorageScanCache {

// The summary of `scan` as compact JSON: version 1, `home`'s path, `customPaths` sorted by
// bytes, and one row per finding in findings order. Paths keep bytes outside UTF-8 as \udcXX.
std::string encode(const StorageScan& scan, const std::filesystem::path& home,
                   const std::vector<std::string>& customPaths);

// The scan a summary `json` holds, when it was made for `home` and exactly the folders
// `customPaths` (in any order) and completed between 604800 seconds before `now` and `now`;
// its findings have empty file lists. Nothing for any other text, with no message.
std::optional<StorageScan> decode(std::string_view json, const std::filesystem::path& home,
                                  const std::vector<std::string>& customPaths, Date now) noexcept;

// Replaces `file` atomically with the summary of `scan`, creating its missing folders. Throws
// std::system_error naming the file or folder and what failed (an earlier summary then stays
// intact), also when `scan.completedAt` is not a finite number.
void save(const StorageScan& scan, const std::filesystem::path& file,
          const std::filesystem::path& home, const std::vector<std::string>& customPaths);

// The scan that the summary in `file` holds, under the conditions of decode(); nothing when the
// file is missing, unreadable, larger than 64 MiB or not acceptable.
std::optional<StorageScan> load(const std::filesystem::path& file,
                                const std::filesystem::path& home,
                                const std::vector<std::string>& customPaths, Date now) noexcept;

// Deletes the summary at its usual place (UserFolders::summaryFile()) before a removal or an
// undo, so that a start before the next scan never shows sizes from before the change. A
// failure, or no summary at all, is of no consequence.
void forget() noexcept;

}  // namespace tallowmere::StorageScanCache
