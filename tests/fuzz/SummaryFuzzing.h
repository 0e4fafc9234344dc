#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "measurement/Date.h"
#include "measurement/StorageScan.h"
#include "persistence/StorageScanCache.h"

// The fixed setting in which the fuzzer and the corpus replay decode summaries; the corpus's
// acceptable seeds are written for it.
namespace tallowmere::fuzzing {

inline const std::filesystem::path home = "/home/dev";
inline const std::vector<std::string> customPaths = {"/srv/b", "/srv/a"};
inline constexpr Date now = 700'000'000.0;

// The scan `json` holds for this setting, or nothing.
inline std::optional<StorageScan> decodeSummary(std::string_view json) {
    return StorageScanCache::decode(json, home, customPaths, now);
}

// True when writing `scan` and reading it back gives the same summary: whatever a summary file
// can hold must survive the next save.
inline bool survivesReencoding(const StorageScan& scan) {
    const auto again = decodeSummary(StorageScanCache::encode(scan, home, customPaths));
    if (!again || again->completedAt != scan.completedAt ||
        again->absentLocations != scan.absentLocations ||
        again->unreadableLocations != scan.unreadableLocations ||
        again->findings.size() != scan.findings.size()) {
        return false;
    }
    for (std::size_t index = 0; index < scan.findings.size(); ++index) {
        const auto& before = scan.findings[index];
        const auto& after = again->findings[index];
        if (after.location.owner != before.location.owner ||
            after.location.category != before.location.category ||
            after.location.relativePath != before.location.relativePath ||
            after.location.detail != before.location.detail || after.url != before.url ||
            after.allocatedBytes != before.allocatedBytes ||
            after.logicalBytes != before.logicalBytes || after.fileCount != before.fileCount ||
            after.skippedCount != before.skippedCount || after.limited != before.limited) {
            return false;
        }
    }
    return true;
}

}  // namespace tallowmere::fuzzing
