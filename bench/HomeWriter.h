#pragma once

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <string>

#include "platform/FileDescriptor.h"

namespace tallowmere::bench {

// Makes entries below one existing folder, named by paths relative to it; every failure
// throws std::system_error naming the entry.
class HomeWriter {
public:
    explicit HomeWriter(const std::filesystem::path& root);

    void folder(const std::string& path) const;
    // Writes `bytes` bytes and dates the file `modified`. Past 64 KiB only the first 4 KiB are
    // written and the rest is left a hole, so big files cost next to no disk.
    void file(const std::string& path, std::int64_t bytes, const timespec& modified) const;
    void hardLink(const std::string& existing, const std::string& path) const;
    void symbolicLink(const std::string& target, const std::string& path) const;

private:
    FileDescriptor m_root;
};

}  // namespace tallowmere::bench
