#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "removal/StorageCleanupResult.h"

namespace tallowmere::cli {

// What a removal or an undo did, as the commands report it.
struct Outcome {
    const char* countKey;  // "moved" or "restored"
    std::int64_t count;
    const char* itemsKey;  // "items" or "remaining"
    const std::vector<TrashedStorageFile>& items;
    const std::vector<std::string>& errors;
    std::optional<std::string> notice;
    std::optional<std::string> error;
};

// With `json`, {countKey, itemsKey:[…], "errors", "notice", "error"} on standard output;
// otherwise the notice on standard output and the error text on standard error.
void reportOutcome(const Outcome& outcome, bool json);

}  // namespace tallowmere::cli
