#include "platform/Deletion.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <vector>

#include "platform/DirectoryStream.h"
#include "platform/EntryStatus.h"
#include "platform/FileDescriptor.h"
#include "platform/FileSystemError.h"
#include "platform/FolderDescriptors.h"
#include "platform/Mounts.h"
#include "platform/PathRules.h"

namespace tallowmere::Deletion {

namespace {

constexpr std::size_t entriesPerRead = 4096;

struct Entry {
    std::string name;
    bool folder = false;  // as listed; a non-folder may still turn out to be one
};

// One open folder of the walk and what is left to remove in it.
struct Level {
    FileDescriptor fd;
    std::string name;  // in the folder above
    EntryStatus status;
    std::vector<Entry> entries;
    std::size_t next = 0;
    std::size_t failuresBefore = 0;  // a folder whose content failed cannot be empty
};

// What could not be removed: the first failure as "path: reason", and how many there were.
class Failures {
public:
    void add(const std::string& path, int code, const std::string& reason) {
        if (m_count++ == 0) {
            m_code = code;
            m_first = path.empty() ? reason : path + ": " + reason;
        }
    }

    std::size_t count() const { return m_count; }

    void throwIfAny() const {
        if (m_count == 1) {
            throw FileSystemError(m_code, m_first);
        }
        if (m_count > 1) {
            throw FileSystemError(
                m_code, m_first + " " + std::to_string(m_count) + " items could not be removed.");
        }
    }

private:
    std::size_t m_count = 0;
    int m_code = 0;
    std::string m_first;
};

// Lists a folder through a second descriptor, so that the walk keeps only a plain descriptor
// per level rather than a directory stream and its buffer. Returns 0 or the errno of the
// failure; what was listed before a failure is kept.
int readEntries(Level& level) {
    FileDescriptor copy(::fcntl(level.fd.get(), F_DUPFD_CLOEXEC, 0));
    if (!copy.valid()) {
        return errno;
    }
    DirectoryStream stream = DirectoryStream::adopt(copy.release());
    if (!stream.valid()) {
        return errno;
    }
    DirectoryChunk chunk;
    while (stream.readChunk(chunk, entriesPerRead, DirectoryStream::StatusReads::none)) {
        for (const auto& entry : chunk.entries) {
            level.entries.push_back(
                {std::string(chunk.name(entry)), entry.status.kind == EntryKind::directory});
        }
    }
    return stream.readFailed() ? errno : 0;
}

// Removes a folder's tree depth first. Every call is relative to a folder descriptor checked
// against what was seen before it was opened, so no path is resolved twice and no link is
// followed; a folder on another mount is reported instead of entered.
class FolderRemoval {
public:
    FolderRemoval(int topParentFd, const BeforeOpen& beforeOpen)
        : m_topParentFd(topParentFd), m_beforeOpen(beforeOpen) {}

    void run(const std::string& name, const EntryStatus& seen) {
        enter(m_topParentFd, name, seen);
        while (!m_levels.empty()) {
            step();
        }
        m_failures.throwIfAny();
    }

private:
    void step() {
        Level& level = m_levels.back();
        if (level.next == level.entries.size()) {
            leave();
            return;
        }
        const Entry entry = std::move(level.entries[level.next++]);
        if (entry.folder || !removedAsNonFolder(level.fd.get(), entry.name)) {
            descend(entry.name);
        }
    }

    // False when the entry is a folder after all (EISDIR).
    bool removedAsNonFolder(int folderFd, const std::string& name) {
        if (::unlinkat(folderFd, name.c_str(), 0) == 0 || errno == ENOENT) {
            return true;
        }
        if (errno == EISDIR) {
            return false;
        }
        fail(name, errno);
        return true;
    }

    void descend(const std::string& name) {
        const Level& level = m_levels.back();
        EntryStatus seen;
        if (!readEntryStatus(level.fd.get(), name.c_str(), seen)) {
            if (errno != ENOENT) {
                fail(name, errno);
            }
        } else if (seen.kind != EntryKind::directory) {
            // Replaced by a file or a link since it was listed: the entry itself goes.
            if (::unlinkat(level.fd.get(), name.c_str(), 0) != 0 && errno != ENOENT) {
                fail(name, errno);
            }
        } else if (!sameMount(seen, level.status)) {
            fail(name, EXDEV, "It is another mounted file system, so it was not entered.");
        } else {
            enter(level.fd.get(), name, seen);
        }
    }

    void enter(int parentFd, const std::string& name, const EntryStatus& seen) {
        if (m_beforeOpen) {
            m_beforeOpen(parentFd, name.c_str());
        }
        Level level;
        level.name = name;
        level.fd = openFolderAt(parentFd, name.c_str(), O_RDONLY);
        if (!level.fd.valid()) {
            if (errno != ENOENT) {
                fail(name, errno);
            }
            return;
        }
        if (!readEntryStatus(level.fd.get(), "", level.status) ||
            level.status.identity != seen.identity || !sameMount(level.status, seen)) {
            fail(name, ESTALE, "It was replaced while it was being removed, so it was skipped.");
            return;
        }
        level.failuresBefore = m_failures.count();
        if (const int error = readEntries(level)) {
            fail(name, error);
        }
        m_levels.push_back(std::move(level));
    }

    void leave() {
        const Level done = std::move(m_levels.back());
        m_levels.pop_back();
        const int parentFd = m_levels.empty() ? m_topParentFd : m_levels.back().fd.get();
        if (::unlinkat(parentFd, done.name.c_str(), AT_REMOVEDIR) != 0 && errno != ENOENT &&
            m_failures.count() == done.failuresBefore) {
            fail(done.name, errno);
        }
    }

    void fail(const std::string& name, int code) { fail(name, code, describeErrno(code)); }

    void fail(const std::string& name, int code, const std::string& reason) {
        m_failures.add(pathOf(name), code, reason);
    }

    // The path of `name` in the deepest open folder, relative to the folder being removed
    // (empty for that folder itself).
    std::string pathOf(const std::string& name) const {
        if (m_levels.empty()) {
            return {};
        }
        std::string path;
        for (std::size_t index = 1; index < m_levels.size(); ++index) {
            path += m_levels[index].name + '/';
        }
        return path + name;
    }

    int m_topParentFd;
    const BeforeOpen& m_beforeOpen;
    std::vector<Level> m_levels;
    Failures m_failures;
};

}  // namespace

void removeFile(const std::filesystem::path& path) {
    const auto file = PathRules::standardized(path);
    const FileDescriptor parent = openFolderWithoutLinks(file.parent_path());
    if (::unlinkat(parent.get(), file.filename().c_str(), 0) == 0) {
        return;
    }
    if (errno == EISDIR) {
        throw FileSystemError(EISDIR, "It is a folder, not a file.");
    }
    throw FileSystemError::fromErrno(errno);
}

void removeFolder(const std::filesystem::path& folder, const BeforeOpen& beforeOpen) {
    const auto path = PathRules::standardized(folder);
    const std::string name = path.filename();
    if (name.empty() || name == "." || name == "..") {
        throw FileSystemError(EINVAL, "This is not a folder that can be removed.");
    }
    const FileDescriptor parent = openFolderWithoutLinks(path.parent_path());
    EntryStatus parentStatus;
    EntryStatus seen;
    if (!readEntryStatus(parent.get(), "", parentStatus) ||
        !readEntryStatus(parent.get(), name.c_str(), seen)) {
        throw FileSystemError::fromErrno(errno);
    }
    if (seen.kind != EntryKind::directory) {
        throw FileSystemError::fromErrno(seen.kind == EntryKind::symbolicLink ? ELOOP : ENOTDIR);
    }
    // A mount point cannot be removed; emptying it would delete a whole file system and still
    // fail.
    if (!sameMount(seen, parentStatus)) {
        throw FileSystemError(EBUSY, "It is the mount point of another file system.");
    }
    FolderRemoval(parent.get(), beforeOpen).run(name, seen);
}

}  // namespace tallowmere::Deletion
