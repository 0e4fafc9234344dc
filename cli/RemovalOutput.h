#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "removal/StorageCleanupResult.h"

namespace tallowmere::cli {

// What a removal or an undo did, as the commands report it.
struct Outcome {
    const char* countKey;  // "moved", "restored" or "deleted"
    std::int64_t count;
    // "bytesFreed" after the count, for what frees space; none otherwise.
    std::optional<std::int64_t> bytesFreed;
    const char* itemsKey;  // "items" or "remaining"
    const std::vector<TrashedStorageFile>& items;
    const std::vector<std::string>& errors;
    std::optional<std::string> notice;
    std::optional<std::string> error;
};

// With `json`, {countKey, ["bytesFreed",] itemsKey:[…], "errors", "notice", "error"} on
// standard output;
// otherwise the notice on standard output and the error text on standard error.
void reportOutcome(const Outcome& outcome, bool json);

// Each text escaped for the terminal, so that no file name in it can drive one.
std::vector<std::string> escapedTexts(std::vector<std::string> texts);

// What a person needs after items went to the Trash: how much they hold (space that stays in
// use until the Trash is emptied), where the undo file is, and the commands that put them back
// or free the space.
std::string afterTrashing(const std::vector<TrashedStorageFile>& items,
                          const std::filesystem::path& undoFile);

// `path` as one word for a POSIX shell: as it is when that is safe, else in single quotes.
std::string shellWord(const std::string& path);

}  // namespace tallowmere::cli
