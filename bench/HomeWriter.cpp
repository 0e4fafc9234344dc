#include "HomeWriter.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace tallowmere::bench {

namespace {

constexpr std::int64_t fullyWrittenLimit = 64 * 1024;
constexpr std::int64_t headerBytes = 4 * 1024;

void check(bool succeeded, const char* action, const std::string& path) {
    if (!succeeded) {
        throw std::system_error(errno, std::generic_category(),
                                std::string("cannot ") + action + " '" + path + "'");
    }
}

// Text rather than zeros, so no file system can store a written block as a hole.
const std::string& filler() {
    static const std::string text = [] {
        const std::string line = "tallowmere synthetic home\n";
        std::string repeated;
        while (repeated.size() < fullyWrittenLimit) {
            repeated += line;
        }
        return repeated;
    }();
    return text;
}

void writeAll(int fd, std::int64_t bytes, const std::string& path) {
    const char* next = filler().data();
    auto left = static_cast<std::size_t>(bytes);
    while (left > 0) {
        const ssize_t written = ::write(fd, next, left);
        if (written < 0 && errno == EINTR) {
            continue;
        }
        check(written > 0, "write", path);
        next += written;
        left -= static_cast<std::size_t>(written);
    }
}

}  // namespace

HomeWriter::HomeWriter(const std::filesystem::path& root)
    : m_root(::open(root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    check(m_root.valid(), "open", root.native());
}

void HomeWriter::folder(const std::string& path) const {
    check(::mkdirat(m_root.get(), path.c_str(), 0755) == 0, "make folder", path);
}

void HomeWriter::file(const std::string& path, std::int64_t bytes, const timespec& modified) const {
    const FileDescriptor file(
        ::openat(m_root.get(), path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
    check(file.valid(), "create", path);
    writeAll(file.get(), bytes > fullyWrittenLimit ? headerBytes : bytes, path);
    if (bytes > fullyWrittenLimit) {
        check(::ftruncate(file.get(), bytes) == 0, "extend", path);
    }
    const timespec times[2] = {modified, modified};
    check(::futimens(file.get(), times) == 0, "date", path);
}

void HomeWriter::hardLink(const std::string& existing, const std::string& path) const {
    check(::linkat(m_root.get(), existing.c_str(), m_root.get(), path.c_str(), 0) == 0, "link",
          path);
}

void HomeWriter::symbolicLink(const std::string& target, const std::string& path) const {
    check(::symlinkat(target.c_str(), m_root.get(), path.c_str()) == 0, "make symbolic link", path);
}

}  // namespace tallowmere::bench
