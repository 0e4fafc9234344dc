#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "measurement/Date.h"
#include "platform/FileIdentity.h"
#include "platform/FilePath.h"

namespace tallowmere {

// One regular file as a scan saw it.
struct FileEntry {
    FilePath url;
    std::int64_t bytes = 0;
    Date modified = distantFuture;
    // Equal for two paths exactly when they name the same file on the same volume.
    std::optional<FileIdentity> fileIdentity;

    std::string id() const { return std::string(url.native()); }
    std::filesystem::path name() const { return std::filesystem::path(url).filename(); }

    bool operator==(const FileEntry&) const = default;
};

}  // namespace tallowmere
