#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "measurement/Date.h"

namespace tallowmere {

// One folder at one moment: its own identity and date, and a SHA-256 fingerprint of every
// item below it, so a later walk can tell whether anything changed.
struct StorageLocationSnapshot {
    std::filesystem::path url;
    std::string category;
    std::string detail;
    std::int64_t allocatedBytes = 0;
    std::int64_t itemCount = 0;
    Date modified = 0;
    std::string fileIdentity;
    std::string fingerprint;  // 64 lower-case hexadecimal digits
    // The same over every item's status change time too, the folder's own left out; empty in
    // a record written before change times were kept.
    std::string changeFingerprint;

    std::string id() const { return url.native(); }

    bool operator==(const StorageLocationSnapshot&) const = default;
};

}  // namespace tallowmere
