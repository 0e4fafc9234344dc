#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tallowmere::AtomicFile {

// Replaces `file` with `bytes` so that a reader sees the old content or the new, never a mix:
// creates the missing parent folders, writes a temporary file beside `file`, flushes it to disk
// and renames it over `file`, then flushes the folder. Throws std::system_error naming the path
// and the failed step; a failure before the rename removes the temporary file and leaves an
// existing `file` as it was.
void write(const std::filesystem::path& file, std::string_view bytes);

// The whole content of the regular file `file` (symbolic links followed); nothing when it is
// missing, unreadable, not a regular file or larger than `maxBytes`.
std::optional<std::string> readWholeFile(const std::filesystem::path& file, std::size_t maxBytes);

// The same for the file `name` in the open folder `folderFd`, never following a symbolic link.
std::optional<std::string> readWholeFileAt(int folderFd, const std::string& name,
                                           std::size_t maxBytes);

}  // namespace tallowmere::AtomicFile
