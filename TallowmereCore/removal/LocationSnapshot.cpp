#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "measurement/WalkSettings.h"
#include "platform/DirectoryStream.h"
#include "platform/EntryStatus.h"
#include "platform/FileSystemError.h"
#include "platform/FolderStack.h"
#include "platform/Mounts.h"
#include "platform/PathRules.h"
#include "removal/BroadLocation.h"
#include "removal/FolderCheck.h"
#include "removal/RemovalErrors.h"
#include "removal/StorageLocationTrash.h"

namespace tallowmere::StorageLocationTrash {

namespace {

constexpr std::size_t chunkSize = 1024;
constexpr std::int64_t checkedFolderLimit = 100000;

[[noreturn]] void fail(ReviewError::Kind kind) {
    throw ReviewError(kind);
}

// A depth-first walk below one opened folder that records every item and never leaves the
// folder's mount or follows a link.
class SnapshotWalk {
public:
    SnapshotWalk(const EntryStatus& folderStatus, std::int64_t maxEntries,
                 const ScanOptions& options)
        : m_folderStatus(folderStatus), m_maxEntries(maxEntries), m_options(options) {
        record("", folderStatus);
    }

    FolderRecords run(DirectoryStream folder) && {
        m_stack.push(0, std::move(folder));
        while (!m_stack.empty()) {
            step();
        }
        m_records.seal();
        return std::move(m_records);
    }

private:
    // Each folder keeps the length of its relative path.
    using Stack = FolderStack<std::size_t>;

    void step() {
        // No status reads for entries past the limit: the walk fails on the first of them.
        const auto budget = static_cast<std::size_t>(std::clamp<std::int64_t>(
            m_maxEntries - m_itemCount + 1, 1, static_cast<std::int64_t>(chunkSize)));
        switch (m_stack.advance(budget)) {
            case Stack::Next::entry:
                break;
            case Stack::Next::failed:
                fail(ReviewError::Kind::unavailable);
            case Stack::Next::finished:
                if (!m_stack.pop()) {
                    fail(ReviewError::Kind::unavailable);
                }
                return;
        }
        Stack::Level& folder = m_stack.top();
        visit(folder, folder.next++);
    }

    void visit(Stack::Level& folder, std::size_t index) {
        const DirectoryEntry& entry = folder.chunk.entries[index];
        if (m_options.stopToken.stop_requested()) {
            throw ScanCancelled();
        }
        if (++m_itemCount > m_maxEntries) {
            fail(ReviewError::Kind::limit);
        }
        m_pace.entryWalked();
        // A failed read is tried once more for its reason; an item that reads now is recorded.
        const EntryStatus status =
            entry.statusFailed ? entryStatusAt(folder.stream->fd(), folder.chunk.cName(entry))
                               : folder.chunk.statuses[index];
        if (!sameMount(status, m_folderStatus)) {
            fail(ReviewError::Kind::unavailable);
        }
        m_path.resize(folder.place);
        if (!m_path.empty()) {
            m_path += '/';
        }
        m_path += folder.chunk.name(entry);
        record(m_path, status);
        if (status.kind == EntryKind::directory) {
            descend(folder, entry);
        }
    }

    void descend(const Stack::Level& parent, const DirectoryEntry& entry) {
        DirectoryStream child =
            DirectoryStream::openChild(parent.stream->fd(), parent.chunk.cName(entry));
        if (!child.valid()) {
            fail(ReviewError::Kind::unavailable);
        }
        m_stack.push(m_path.size(), std::move(child));  // invalidates `parent` and `entry`
    }

    void record(std::string_view relativePath, const EntryStatus& status) {
        if (!status.hasModified) {
            fail(ReviewError::Kind::unavailable);
        }
        m_records.add(relativePath, status);
    }

    const EntryStatus m_folderStatus;
    const std::int64_t m_maxEntries;
    const ScanOptions& m_options;
    FolderRecords m_records;
    std::int64_t m_itemCount = 0;
    std::string m_path;  // relative path of the item being visited
    Stack m_stack{DirectoryStream::StatusReads::everything};
    WalkPace m_pace{m_options.pauses, nullptr};  // the scan's pace: a review walks as gently
};

// The folder's own status, once it is known to be a plain folder that is not a mount point.
EntryStatus checkedFolderStatus(const std::filesystem::path& target) {
    const EntryStatus status = entryStatusAt(AT_FDCWD, target.c_str());
    const EntryStatus parent = entryStatusAt(AT_FDCWD, target.parent_path().c_str());
    if (status.kind != EntryKind::directory || !sameMount(status, parent)) {
        fail(ReviewError::Kind::broadLocation);
    }
    if (!status.hasModified) {
        fail(ReviewError::Kind::unavailable);
    }
    return status;
}

}  // namespace

StorageLocationSnapshot snapshot(const std::filesystem::path& folder, const std::string& category,
                                 const std::string& detail, std::int64_t maxEntries,
                                 const ScanOptions& options) {
    const std::filesystem::path target = PathRules::absoluteStandardized(folder);
    if (isBroadLocation(target)) {
        fail(ReviewError::Kind::broadLocation);
    }
    if (PathRules::resolvingSymlinks(target) != target) {
        throw FileTrashError();
    }
    const EntryStatus checked = checkedFolderStatus(target);
    DirectoryStream stream = DirectoryStream::openChild(AT_FDCWD, target.c_str());
    if (!stream.valid()) {
        fail(ReviewError::Kind::unavailable);
    }
    // The folder opened must be the one just checked, not one put in its place since.
    const EntryStatus opened = entryStatusAt(stream.fd(), "");
    if (opened.identity != checked.identity) {
        throw FileTrashError();
    }
    const FolderRecords records = SnapshotWalk(opened, maxEntries, options).run(std::move(stream));
    return {.url = target,
            .category = category,
            .detail = detail,
            .allocatedBytes = records.allocatedBytes(),
            .itemCount = records.itemCount(),
            .modified = dateFromFileTime(opened.modifiedSeconds, opened.modifiedNanoseconds),
            .fileIdentity = opened.identity.text(),
            .fingerprint = records.fingerprint(),
            .changeFingerprint = records.changeFingerprint()};
}

FolderRecords checkedFolder(int parentFd, const std::string& name,
                            const StorageLocationSnapshot& reviewed, const ScanOptions& options) {
    DirectoryStream stream = DirectoryStream::openChild(parentFd, name.c_str());
    if (!stream.valid()) {
        if (errno == ELOOP || errno == ENOTDIR) {
            throw FileTrashError();  // a link or a file now stands there
        }
        throw FileSystemError::fromErrno(errno);
    }
    const EntryStatus opened = entryStatusAt(stream.fd(), "");
    if (opened.identity.text() != reviewed.fileIdentity) {
        throw FileTrashError();
    }
    FolderRecords records =
        SnapshotWalk(opened, checkedFolderLimit, options).run(std::move(stream));
    // A review without change times (written before they were kept) is held to the rest.
    const bool sameChanges = reviewed.changeFingerprint.empty() ||
                             records.changeFingerprint() == reviewed.changeFingerprint;
    if (records.fingerprint() != reviewed.fingerprint || !sameChanges) {
        throw FileTrashError();
    }
    return records;
}

}  // namespace tallowmere::StorageLocationTrash
