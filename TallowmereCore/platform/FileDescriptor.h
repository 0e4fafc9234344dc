#pragma once

#include <unistd.h>

#include <cerrno>
#include <string_view>
#include <utility>

namespace tallowmere {

// Owns one open file descriptor and closes it on destruction; move-only.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int fd) : m_fd(fd) {}
    FileDescriptor(FileDescriptor&& other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        if (this != &other) {
            reset();
            m_fd = std::exchange(other.m_fd, -1);
        }
        return *this;
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() { reset(); }

    int get() const { return m_fd; }
    bool valid() const { return m_fd >= 0; }
    // Gives up ownership without closing.
    int release() { return std::exchange(m_fd, -1); }

private:
    void reset() {
        if (m_fd >= 0) {
            ::close(m_fd);
            m_fd = -1;
        }
    }

    int m_fd = -1;
};

// Writes all of `bytes` to `fd`, going on after interrupted or short writes. Returns false and
// sets errno when a write fails.
[[nodiscard]] inline bool writeAll(int fd, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(fd, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR) {
            return false;
        }
        bytes.remove_prefix(written > 0 ? static_cast<std::size_t>(written) : 0);
    }
    return true;
}

}  // namespace tallowmere
