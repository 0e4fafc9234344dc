#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "measurement/Date.h"

namespace tallowmere::testing {

// A folder under the system's temporary folder, filled by the test and removed with
// everything in it (unreadable folders included) when the value goes away.
class TemporaryTree {
public:
    TemporaryTree();
    TemporaryTree(const TemporaryTree&) = delete;
    TemporaryTree& operator=(const TemporaryTree&) = delete;
    ~TemporaryTree();

    const std::filesystem::path& root() const { return m_root; }
    std::filesystem::path operator/(const std::string& relative) const { return m_root / relative; }

    // Creates the folder and its parents; returns its path.
    std::filesystem::path folder(const std::string& relative) const;
    // Writes a file of `bytes` bytes (parents created) and, if given, sets its modification
    // date; returns its path.
    std::filesystem::path file(const std::string& relative, std::int64_t bytes = 1,
                               Date modified = 0) const;
    std::filesystem::path symlink(const std::string& target, const std::string& relative) const;
    std::filesystem::path hardLink(const std::string& existing, const std::string& relative) const;

private:
    std::filesystem::path m_root;
};

// True when something (a symbolic link included, dangling or not) lies at `path`.
bool presentAt(const std::filesystem::path& path);

// Sets a file's modification date without following a symbolic link.
void setModified(const std::filesystem::path& path, Date modified);

// The allocated bytes of a file as the file system reports them (st_blocks × 512).
std::int64_t allocatedBytesOf(const std::filesystem::path& path);

// Runs `body` as an unprivileged user so that permission faults happen even when the tests
// run as root: in a forked child that drops to uid and gid 65534, with `workFolder` handed
// over to that user first. Without root, runs `body` directly. Returns what `body` returns,
// or nothing when that user could not reach `workFolder` (a folder above it is closed).
std::optional<std::string> runUnprivileged(const std::filesystem::path& workFolder,
                                           const std::function<std::string()>& body);

// Runs `body` in a forked child inside a private mount namespace, so that it can mount file
// systems under the test's folders without touching the rest of the system; the mounts vanish
// with the child. Returns what `body` returns, or nothing when mounting is not permitted here
// (no root, or a container that forbids it).
std::optional<std::string> runInMountNamespace(const std::function<std::string()>& body);

}  // namespace tallowmere::testing
