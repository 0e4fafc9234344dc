#include "platform/AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <system_error>

#include "platform/FileDescriptor.h"

namespace tallowmere::AtomicFile {

namespace {

[[noreturn]] void fail(int error, const std::string& what) {
    throw std::system_error(error, std::generic_category(), what);
}

std::filesystem::path folderOf(const std::filesystem::path& file) {
    return file.has_parent_path() ? file.parent_path() : std::filesystem::path(".");
}

void createFolders(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) {
        throw std::system_error(error, "Cannot create the folder " + folder.native());
    }
}

// A file created exclusively beside the target, under a unique name hidden from listings;
// removed when it goes away unless it was renamed over the target.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::filesystem::path& target) {
        std::string pattern =
            (folderOf(target) / ("." + target.filename().native() + ".XXXXXX")).native();
        m_descriptor = FileDescriptor(::mkostemp(pattern.data(), O_CLOEXEC));
        if (!m_descriptor.valid()) {
            fail(errno, "Cannot create a temporary file beside " + target.native());
        }
        m_path = pattern;
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (!m_path.empty()) {
            ::unlink(m_path.c_str());
        }
    }

    int descriptor() const { return m_descriptor.get(); }

    void renameOver(const std::filesystem::path& target) {
        if (::rename(m_path.c_str(), target.c_str()) != 0) {
            fail(errno, "Cannot move the new content into place at " + target.native());
        }
        m_path.clear();
    }

private:
    FileDescriptor m_descriptor;
    std::string m_path;
};

// Makes the rename itself survive a crash. File systems that cannot flush a folder answer
// EINVAL; there is nothing more to do on those.
void flushFolder(const std::filesystem::path& folder) {
    const FileDescriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!descriptor.valid() || (::fsync(descriptor.get()) != 0 && errno != EINVAL)) {
        fail(errno, "Cannot flush the folder " + folder.native() + " to disk");
    }
}

// The whole content of the regular file open as `descriptor`, up to `maxBytes`.
std::optional<std::string> readOpened(const FileDescriptor& descriptor, std::size_t maxBytes) {
    struct stat status;
    if (!descriptor.valid() || ::fstat(descriptor.get(), &status) != 0 ||
        !S_ISREG(status.st_mode) || static_cast<std::uint64_t>(status.st_size) > maxBytes) {
        return std::nullopt;
    }
    std::string content;
    char buffer[65536];
    for (;;) {
        const ssize_t count = ::read(descriptor.get(), buffer, sizeof buffer);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        // The file may have grown since fstat.
        if (count < 0 || content.size() + static_cast<std::size_t>(count) > maxBytes) {
            return std::nullopt;
        }
        if (count == 0) {
            return content;
        }
        content.append(buffer, static_cast<std::size_t>(count));
    }
}

}  // namespace

void write(const std::filesystem::path& file, std::string_view bytes) {
    const auto folder = folderOf(file);
    createFolders(folder);
    TemporaryFile temporary(file);
    if (!writeAll(temporary.descriptor(), bytes)) {
        fail(errno, "Cannot write " + file.native());
    }
    if (::fsync(temporary.descriptor()) != 0) {
        fail(errno, "Cannot flush " + file.native() + " to disk");
    }
    temporary.renameOver(file);
    flushFolder(folder);
}

std::optional<std::string> readWholeFile(const std::filesystem::path& file, std::size_t maxBytes) {
    // O_NONBLOCK keeps a FIFO from blocking the open; the type check below refuses it anyway.
    return readOpened(
        FileDescriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK)),
        maxBytes);
}

std::optional<std::string> readWholeFileAt(int folderFd, const std::string& name,
                                           std::size_t maxBytes) {
    return readOpened(
        FileDescriptor(::openat(folderFd, name.c_str(),
                                O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK | O_NOFOLLOW)),
        maxBytes);
}

}  // namespace tallowmere::AtomicFile
