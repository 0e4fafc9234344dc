#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/FileDescriptor.h"

namespace tallowmere {

// A small record file (an undo file) held under an exclusive lock for as long as the value
// lives, so that two processes never write it at once. Its content is replaced atomically,
// and the lock goes with it: each new version is locked before it is renamed into place.
// Move-only.
class LockedFile {
public:
    // Opens `file`, creating it empty (readable by the user alone) when it is missing, and
    // locks it without waiting. Nothing when another process holds it. Throws FileSystemError,
    // naming the file, when it cannot be opened or is not a regular file.
    static std::optional<LockedFile> open(const std::filesystem::path& file);

    // True when `open` created the file.
    bool created() const { return m_created; }
    // The whole content; throws FileSystemError when it is larger than `maxBytes` or cannot be
    // read.
    std::string read(std::size_t maxBytes) const;
    // Replaces the content with `bytes`: a new file beside it, locked, written and flushed,
    // then renamed over it. Throws FileSystemError naming the file; the old content then stays.
    void replace(std::string_view bytes);
    // Removes the file, still locked, so nobody else can have written it. Throws FileSystemError.
    void remove();

private:
    LockedFile(std::filesystem::path path, FileDescriptor folder, FileDescriptor file,
               bool created);

    std::filesystem::path m_path;
    std::string m_name;
    FileDescriptor m_folder;
    FileDescriptor m_file;
    bool m_created = false;
};

}  // namespace tallowmere
