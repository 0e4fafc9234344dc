#include "platform/LockedFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/FileSystemError.h"
#include "platform/Renaming.h"

namespace tallowmere {

namespace {

[[noreturn]] void fail(const std::filesystem::path& file, int code) {
    throw FileSystemError(code, file.native() + ": " + describeErrno(code));
}

bool sameFile(const struct stat& first, const struct stat& second) {
    return first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

}  // namespace

LockedFile::LockedFile(std::filesystem::path path, FileDescriptor folder, FileDescriptor file,
                       bool created)
    : m_path(std::move(path)),
      m_name(m_path.filename()),
      m_folder(std::move(folder)),
      m_file(std::move(file)),
      m_created(created) {}

std::optional<LockedFile> LockedFile::open(const std::filesystem::path& file) {
    const auto folderPath = file.has_parent_path() ? file.parent_path() : ".";
    FileDescriptor folder(::open(folderPath.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder.valid()) {
        fail(file, errno);
    }
    const std::string name = file.filename();
    // Another writer may rename a new version into place between our open and our lock:
    // the file locked must still be the one at the name.
    for (;;) {
        bool created = false;
        FileDescriptor opened(
            ::openat(folder.get(), name.c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC));
        if (!opened.valid() && errno == ENOENT) {
            opened =
                FileDescriptor(::openat(folder.get(), name.c_str(),
                                        O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
            created = opened.valid();
            if (!opened.valid() && errno == EEXIST) {
                continue;
            }
        }
        struct stat status;
        if (!opened.valid() && errno == ELOOP) {
            throw FileSystemError(ELOOP,
                                  file.native() + ": It is a symbolic link, so it is not used.");
        }
        if (!opened.valid() || ::fstat(opened.get(), &status) != 0) {
            fail(file, errno);
        }
        if (!S_ISREG(status.st_mode)) {
            throw FileSystemError(EINVAL, file.native() + ": It is not a regular file.");
        }
        if (::flock(opened.get(), LOCK_EX | LOCK_NB) != 0) {
            if (errno == EWOULDBLOCK) {
                return std::nullopt;
            }
            fail(file, errno);
        }
        struct stat atName;
        if (::fstatat(folder.get(), name.c_str(), &atName, AT_SYMLINK_NOFOLLOW) == 0 &&
            sameFile(atName, status)) {
            return LockedFile(file, std::move(folder), std::move(opened), created);
        }
    }
}

std::string LockedFile::read(std::size_t maxBytes) const {
    std::string content;
    char buffer[65536];
    for (off_t offset = 0;;) {
        const ssize_t count = ::pread(m_file.get(), buffer, sizeof buffer, offset);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            fail(m_path, errno);
        }
        if (count == 0) {
            return content;
        }
        if (content.size() + static_cast<std::size_t>(count) > maxBytes) {
            fail(m_path, EFBIG);
        }
        content.append(buffer, static_cast<std::size_t>(count));
        offset += count;
    }
}

void LockedFile::replace(std::string_view bytes) {
    const std::string temporary = Renaming::privateName();
    FileDescriptor next(::openat(m_folder.get(), temporary.c_str(),
                                 O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!next.valid()) {
        fail(m_path, errno);
    }
    try {
        if (::flock(next.get(), LOCK_EX | LOCK_NB) != 0) {
            fail(m_path, errno);
        }
        if (!writeAll(next.get(), bytes) || ::fsync(next.get()) != 0) {
            fail(m_path, errno);
        }
        if (::renameat(m_folder.get(), temporary.c_str(), m_folder.get(), m_name.c_str()) != 0) {
            fail(m_path, errno);
        }
    } catch (const FileSystemError&) {
        ::unlinkat(m_folder.get(), temporary.c_str(), 0);
        throw;
    }
    m_file = std::move(next);  // the old version's lock goes with its descriptor
    // File systems that cannot flush a folder answer EINVAL; the rename stands regardless.
    if (::fsync(m_folder.get()) != 0 && errno != EINVAL) {
        fail(m_path, errno);
    }
}

void LockedFile::remove() {
    if (::unlinkat(m_folder.get(), m_name.c_str(), 0) != 0) {
        fail(m_path, errno);
    }
}

}  // namespace tallowmere
