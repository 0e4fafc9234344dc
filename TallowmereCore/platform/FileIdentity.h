#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tallowmere {

// Names one file on one volume: hard links share it, bind mounts of a file system too.
struct FileIdentity {
    std::uint64_t device = 0;  // as stat(2)'s st_dev reports it
    std::uint64_t inode = 0;

    // The identity as text, "device:inode" in decimal: the only place that form is made.
    std::string text() const;
    // The identity that `text()` wrote, or nothing for any other text.
    static std::optional<FileIdentity> parse(std::string_view text);

    bool operator==(const FileIdentity&) const = default;
};

struct FileIdentityHash {
    std::size_t operator()(const FileIdentity& identity) const noexcept {
        return std::hash<std::uint64_t>{}(identity.inode * 0x9E3779B97F4A7C15ULL ^ identity.device);
    }
};

}  // namespace tallowmere
