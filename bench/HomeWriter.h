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
    // Keeps `root` open, so later paths resolve against it even if it is renamed.
    explicit HomeWriter(const std::filesystem::path& root);

    // Makes one folder (mode 0755); its parent must exist.
    void folder(const std::string& path) const;
    // Writes `bytes` bytes and dates the file `modified`. Past 64 KiB only the first 4 KiB are
    // written and the rest is left a hole, so big files cost next to no disk.
    void file(const std::string& path, std::int64_t bytes, const timespec& modified) const;
    // Gives the file at `existing` a second name, `path`.
    void hardLink(const std::string& existing, const std::string& path) const;
    // Makes a symbolic link holding `target` as it is, relative to the link's own folder.
    void symbolicLink(const std::string& target, const std::string& path) const;

private:
    FileDescriptor m_root;
};

}  // namespace tallowmere::bench
