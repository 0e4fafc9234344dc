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
// Folders the walk keeps open at once, whatever the depth: deeper down, the outermost open one
// is closed (its listing is already in memory) and opened again through ".." from the folder
// below when the walk comes back to it, so that any depth fits a small open-file limit.
constexpr std::size_t openFoldersAtMost = 16;

// One open folder of the walk and what is left to remove in it.
struct Level {
    FileDescriptor fd;
    std::string name;  // in the folder above
    EntryStatus status;
    std::vector<std::string> entries;
    std::size_t next = 0;
    std::size_t failuresBefore = 0;  // a folder whose content failed cannot be empty
    std::size_t keptBefore = 0;      // nor one whose content was kept
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
            level.entries.emplace_back(chunk.name(entry));
        }
    }
    return stream.readFailed() ? errno : 0;
}

// Removes a folder's tree depth first. Every call is relative to a folder descriptor checked
// against what was seen before it was opened, so no path is resolved twice and no link is
// followed; a folder on another mount is reported instead of entered. Each item's status is
// read just before it goes, so that only what `removable` accepts is deleted.
class FolderRemoval {
public:
    FolderRemoval(int topParentFd, const Removable& removable, const BeforeOpen& beforeOpen)
        : m_topParentFd(topParentFd), m_removable(removable), m_beforeOpen(beforeOpen) {}

    std::size_t run(const std::string& name, const EntryStatus& seen) {
        enter(m_topParentFd, name, seen);
        while (!m_levels.empty()) {
            step();
        }
        m_failures.throwIfAny();
        return m_kept;
    }

private:
    void step() {
        Level& level = m_levels.back();
        if (level.next == level.entries.size()) {
            leave();
            return;
        }
        const std::string name = std::move(level.entries[level.next++]);
        EntryStatus status;
        if (!readEntryStatus(level.fd.get(), name.c_str(), status)) {
            if (errno != ENOENT) {
                fail(name, errno);
            }
        } else if (!m_removable(pathOf(name), status)) {
            ++m_kept;
        } else if (status.kind != EntryKind::directory) {
            removeNonFolder(level.fd.get(), name);
        } else if (!sameMount(status, level.status)) {
            fail(name, EXDEV, "It is another mounted file system, so it was not entered.");
        } else {
            enter(level.fd.get(), name, status);
        }
    }

    void removeNonFolder(int folderFd, const std::string& name) {
        if (::unlinkat(folderFd, name.c_str(), 0) == 0 || errno == ENOENT) {
            return;
        }
        if (errno == EISDIR) {
            ++m_kept;  // a folder put in its place since its status was read
            return;
        }
        fail(name, errno);
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
        level.keptBefore = m_kept;
        if (const int error = readEntries(level)) {
            fail(name, error);
        }
        if (m_open == openFoldersAtMost) {
            // Its listing is read: only its descriptor is given up, until the walk is back.
            for (Level& outer : m_levels) {
                if (outer.fd.valid()) {
                    outer.fd = FileDescriptor();
                    --m_open;
                    break;
                }
            }
        }
        m_levels.push_back(std::move(level));
        ++m_open;
    }

    // Opens the closed folder the walk comes back to through ".." of the one it leaves, only
    // if it is still the folder it was; otherwise nothing more of it is removed.
    void reopenFrom(const Level& child) {
        Level& parent = m_levels.back();
        FileDescriptor reopened = openFolderAt(child.fd.get(), "..", O_RDONLY);
        EntryStatus status;
        if (reopened.valid() && readEntryStatus(reopened.get(), "", status) &&
            status.identity == parent.status.identity && sameMount(status, parent.status)) {
            parent.fd = std::move(reopened);
            ++m_open;
            return;
        }
        fail(parent.name, ESTALE, "It was moved while it was being removed, so it was skipped.");
        parent.next = parent.entries.size();
    }

    void leave() {
        Level done = std::move(m_levels.back());
        m_levels.pop_back();
        --m_open;
        if (!m_levels.empty() && !m_levels.back().fd.valid()) {
            reopenFrom(done);
        }
        if (m_kept != done.keptBefore || m_failures.count() != done.failuresBefore) {
            return;  // not empty, and already accounted for
        }
        if (!m_levels.empty() && !m_levels.back().fd.valid()) {
            return;  // its folder is gone from under it; reported there
        }
        const int parentFd = m_levels.empty() ? m_topParentFd : m_levels.back().fd.get();
        if (::unlinkat(parentFd, done.name.c_str(), AT_REMOVEDIR) == 0 || errno == ENOENT) {
            return;
        }
        if (errno == ENOTEMPTY || errno == EEXIST) {
            ++m_kept;  // something was added after the folder was listed
            return;
        }
        fail(done.name, errno);
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
    const Removable& m_removable;
    const BeforeOpen& m_beforeOpen;
    std::vector<Level> m_levels;
    std::size_t m_open = 0;  // levels whose folder is open
    Failures m_failures;
    std::size_t m_kept = 0;
};

}  // namespace

void removeFile(const std::filesystem::path& path) {
    const auto file = PathRules::standardized(path);
    removeFileAt(openFolderWithoutLinks(file.parent_path()).get(), file.filename());
}

void removeFileAt(int folderFd, const std::string& name) {
    if (::unlinkat(folderFd, name.c_str(), 0) == 0) {
        return;
    }
    if (errno == EISDIR) {
        throw FileSystemError(EISDIR, "It is a folder, not a file.");
    }
    throw FileSystemError::fromErrno(errno);
}

std::size_t removeFolderAt(int parentFd, const std::string& name, const EntryStatus& seen,
                           const Removable& removable, const BeforeOpen& beforeOpen) {
    return FolderRemoval(parentFd, removable, beforeOpen).run(name, seen);
}

}  // namespace tallowmere::Deletion
