#include "TemporaryTree.h"

#include <dirent.h>
#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <variant>
#include <vector>

namespace tallowmere::testing {

namespace {

constexpr uid_t unprivilegedId = 65534;

void check(bool succeeded, const std::string& what) {
    if (!succeeded) {
        throw std::system_error(errno, std::generic_category(), what);
    }
}

// Removes `name` inside `parentFd` and everything below it, unreadable folders and paths
// longer than PATH_MAX included, by working relative to each folder.
void removeTree(int parentFd, const char* name) {
    if (::unlinkat(parentFd, name, 0) == 0 || errno != EISDIR) {
        return;
    }
    ::fchmodat(parentFd, name, 0700, 0);
    const int fd = ::openat(parentFd, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (DIR* folder = fd >= 0 ? ::fdopendir(fd) : nullptr) {
        std::vector<std::string> names;
        while (const dirent* entry = ::readdir(folder)) {
            if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0) {
                names.emplace_back(entry->d_name);
            }
        }
        for (const auto& child : names) {
            removeTree(::dirfd(folder), child.c_str());
        }
        ::closedir(folder);
    }
    ::unlinkat(parentFd, name, AT_REMOVEDIR);
}

constexpr int childNotPermitted = 5;

// Writes `body`'s result (or its exception's text) to `channel` and ends the forked child.
[[noreturn]] void reportFromChild(int channel, const std::function<std::string()>& body) {
    std::string output;
    try {
        output = body();
    } catch (const std::exception& error) {
        output = std::string("exception: ") + error.what();
    }
    for (std::size_t written = 0; written < output.size();) {
        const ssize_t count = ::write(channel, output.data() + written, output.size() - written);
        if (count <= 0) {
            ::_exit(4);
        }
        written += static_cast<std::size_t>(count);
    }
    ::_exit(0);
}

// Runs `body` in a forked child after `prepare`, which returns false to give up; the child's
// exit status when it gave up, else what `body` reported.
std::variant<int, std::string> runInChild(const std::function<bool()>& prepare,
                                          const std::function<std::string()>& body) {
    int channel[2];
    check(::pipe(channel) == 0, "pipe");
    const pid_t child = ::fork();
    check(child >= 0, "fork");
    if (child == 0) {
        ::close(channel[0]);
        if (!prepare()) {
            ::_exit(errno == EPERM ? childNotPermitted : 3);
        }
        reportFromChild(channel[1], body);
    }
    ::close(channel[1]);
    std::string output;
    char buffer[4096];
    for (ssize_t count; (count = ::read(channel[0], buffer, sizeof buffer)) > 0;) {
        output.append(buffer, static_cast<std::size_t>(count));
    }
    ::close(channel[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0) {
        return output;
    }
    return status;
}

}  // namespace

TemporaryTree::TemporaryTree() {
    const char* base = std::getenv("TMPDIR");
    std::string pattern = std::string(base && *base ? base : "/tmp") + "/tallowmere-test-XXXXXX";
    check(::mkdtemp(pattern.data()) != nullptr, "mkdtemp " + pattern);
    // Resolved so the root holds no symbolic link (TMPDIR may contain one).
    m_root = std::filesystem::canonical(pattern);
    ::chmod(m_root.c_str(), 0755);
}

TemporaryTree::~TemporaryTree() {
    removeTree(AT_FDCWD, m_root.c_str());
}

std::filesystem::path TemporaryTree::folder(const std::string& relative) const {
    const auto path = m_root / relative;
    std::filesystem::create_directories(path);
    return path;
}

std::filesystem::path TemporaryTree::file(const std::string& relative, std::int64_t bytes,
                                          Date modified) const {
    const auto path = m_root / relative;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << std::string(static_cast<std::size_t>(bytes), 'x');
    if (modified != 0) {
        setModified(path, modified);
    }
    return path;
}

std::filesystem::path TemporaryTree::symlink(const std::string& target,
                                             const std::string& relative) const {
    const auto path = m_root / relative;
    std::filesystem::create_directories(path.parent_path());
    std::filesystem::create_symlink(target, path);
    return path;
}

std::filesystem::path TemporaryTree::hardLink(const std::string& existing,
                                              const std::string& relative) const {
    const auto path = m_root / relative;
    std::filesystem::create_directories(path.parent_path());
    std::filesystem::create_hard_link(m_root / existing, path);
    return path;
}

bool presentAt(const std::filesystem::path& path) {
    struct stat status;
    return ::lstat(path.c_str(), &status) == 0;
}

void setModified(const std::filesystem::path& path, Date modified) {
    const double sinceEpoch = modified + unixEpochToReferenceDate;
    const double seconds = std::floor(sinceEpoch);
    const timespec times[2] = {{static_cast<time_t>(seconds), 0},
                               {static_cast<time_t>(seconds),
                                static_cast<long>(std::lround((sinceEpoch - seconds) * 1e9))}};
    check(::utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW) == 0,
          "utimensat " + path.native());
}

std::int64_t allocatedBytesOf(const std::filesystem::path& path) {
    struct stat status;
    check(::lstat(path.c_str(), &status) == 0, "lstat " + path.native());
    return static_cast<std::int64_t>(status.st_blocks) * 512;
}

std::optional<std::string> runUnprivileged(const std::filesystem::path& workFolder,
                                           const std::function<std::string()>& body) {
    if (::geteuid() != 0) {
        return body();
    }
    for (auto folder = workFolder.parent_path(); folder != folder.parent_path();
         folder = folder.parent_path()) {
        struct stat status;
        if (::stat(folder.c_str(), &status) != 0 || (status.st_mode & S_IXOTH) == 0) {
            return std::nullopt;
        }
    }
    check(::chown(workFolder.c_str(), unprivilegedId, unprivilegedId) == 0,
          "chown " + workFolder.native());
    const auto result = runInChild(
        [] {
            return ::setresgid(unprivilegedId, unprivilegedId, unprivilegedId) == 0 &&
                   ::setresuid(unprivilegedId, unprivilegedId, unprivilegedId) == 0;
        },
        body);
    if (const auto* output = std::get_if<std::string>(&result)) {
        return *output;
    }
    throw std::runtime_error("the unprivileged child failed with status " +
                             std::to_string(std::get<int>(result)));
}

std::optional<std::string> runInMountNamespace(const std::function<std::string()>& body) {
    const auto result = runInChild(
        [] {
            return ::unshare(CLONE_NEWNS) == 0 &&
                   ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
        },
        body);
    if (const auto* output = std::get_if<std::string>(&result)) {
        return *output;
    }
    const int status = std::get<int>(result);
    if (WIFEXITED(status) && WEXITSTATUS(status) == childNotPermitted) {
        return std::nullopt;
    }
    throw std::runtime_error("the child in its own mount namespace failed with status " +
                             std::to_string(status));
}

}  // namespace tallowmere::testing
