#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <thread>
#include <utility>

#include "platform/DirectoryStream.h"
#include "platform/EntryStatus.h"
#include "platform/FileSystemError.h"
#include "platform/PathRules.h"
#include "platform/UserFolders.h"
#include "removal/RemovalErrors.h"
#include "removal/StorageLocationTrash.h"
#include "text/JsonText.h"
#include "text/Sha256.h"

namespace tallowmere::StorageLocationTrash {

namespace {

constexpr std::size_t chunkSize = 1024;
constexpr std::int64_t itemsBetweenPauses = 256;
constexpr auto pauseLength = std::chrono::milliseconds(2);

// Folders that hold far more than one tool's storage, on macOS and on Linux.
constexpr std::string_view broadFolders[] = {
    "/",        "/System",      "/Library", "/Applications", "/Users", "/Volumes",
    "/private", "/private/tmp", "/home",    "/root",         "/usr",   "/etc",
    "/var",     "/srv",         "/mnt",     "/media",        "/run",   "/tmp",
    "/boot",    "/opt",         "/bin",     "/sbin",         "/lib",   "/lib64",
    "/proc",    "/sys",         "/dev"};
constexpr std::string_view broadHomeSubfolders[] = {
    "/Library", "/Library/Application Support", "/.config", "/.cache", "/.local", "/.local/share"};
// Trees that belong to the system as a whole, whatever lies in them.
constexpr std::string_view systemTrees[] = {"/System/", "/usr/", "/etc/",  "/proc/",
                                            "/sys/",    "/dev/", "/boot/", "/var/lib/"};

[[noreturn]] void fail(ReviewError::Kind kind) {
    throw ReviewError(kind);
}

bool isHomeOrAbove(const std::string& target, const std::string& home) {
    return target == home || PathRules::isInside(home, target);
}

bool isCurrentHomeFolder(const std::string& target) {
    const std::string home = UserFolders::homeFolder().native();
    return isHomeOrAbove(target, home) ||
           std::ranges::any_of(broadHomeSubfolders, [&](std::string_view subfolder) {
               return target == home + std::string(subfolder);
           });
}

// Other accounts' homes count too, both as written and as their links lead.
bool isAnyAccountsHome(const std::string& target) {
    return std::ranges::any_of(UserFolders::passwordDatabaseHomes(), [&](const auto& home) {
        return isHomeOrAbove(target, home.native()) ||
               isHomeOrAbove(target, PathRules::resolvingSymlinks(home).native());
    });
}

bool isBroad(const std::string& target) {
    const bool tooShallow = std::ranges::count(target, '/') < 2;  // "/" and "/opt"
    return tooShallow || std::ranges::find(broadFolders, target) != std::end(broadFolders) ||
           std::ranges::any_of(systemTrees,
                               [&](std::string_view tree) { return target.starts_with(tree); }) ||
           isCurrentHomeFolder(target) || isAnyAccountsHome(target);
}

// Without a mount id from the kernel, a different device is the best sign of another mount.
bool onAnotherMount(const EntryStatus& item, const EntryStatus& reference) {
    if (item.mountId != 0 && reference.mountId != 0) {
        return item.mountId != reference.mountId;
    }
    return item.identity.device != reference.identity.device;
}

EntryStatus statusAt(int directoryFd, const char* name) {
    EntryStatus status;
    if (!readEntryStatus(directoryFd, name, status)) {
        throw FileSystemError::fromErrno(errno);
    }
    return status;
}

std::string_view kindText(EntryKind kind) {
    switch (kind) {
        case EntryKind::symbolicLink:
            return "link";
        case EntryKind::directory:
            return "directory";
        case EntryKind::regularFile:
            return "file";
        default:
            return "other";
    }
}

// Item records one after another in one buffer: 100,000 of them make one growing allocation,
// not one each.
class RecordList {
public:
    void add(std::string_view relativePath, const EntryStatus& status) {
        const std::size_t start = m_text.size();
        appendField(relativePath);
        appendField(kindText(status.kind));
        appendField(status.identity.text());
        appendField(JsonText::shortestNumber(
            dateFromFileTime(status.modifiedSeconds, status.modifiedNanoseconds)));
        appendField(status.kind == EntryKind::directory ? "-1"
                                                        : std::to_string(status.logicalBytes));
        m_spans.emplace_back(start, m_text.size() - start);
    }

    // The SHA-256 of the records in ascending byte order, as lower-case hexadecimal.
    std::string fingerprint() {
        std::ranges::sort(m_spans, {}, [this](const Span& span) { return record(span); });
        Sha256 digest;
        for (const Span& span : m_spans) {
            digest.update(record(span));
        }
        return digest.hexDigest();
    }

private:
    using Span = std::pair<std::size_t, std::size_t>;  // offset and length in m_text

    std::string_view record(const Span& span) const {
        return std::string_view(m_text).substr(span.first, span.second);
    }

    void appendField(std::string_view text) {
        char length[24];
        const auto end = std::to_chars(std::begin(length), std::end(length), text.size()).ptr;
        m_text.append(length, end);
        m_text += ':';
        m_text += text;
    }

    std::string m_text;
    std::vector<Span> m_spans;
};

// A depth-first walk below one opened folder that records every item and never leaves the
// folder's mount or follows a link.
class SnapshotWalk {
public:
    SnapshotWalk(const EntryStatus& folderStatus, std::int64_t maxEntries,
                 const ScanOptions& options)
        : m_folderStatus(folderStatus), m_maxEntries(maxEntries), m_options(options) {
        record("", folderStatus);
    }

    void run(DirectoryStream folder) {
        push(std::move(folder));
        while (!m_stack.empty()) {
            step();
        }
    }

    std::int64_t itemCount() const { return m_itemCount; }
    std::int64_t allocatedBytes() const { return m_allocatedBytes; }
    std::string fingerprint() { return m_records.fingerprint(); }

private:
    struct Folder {
        DirectoryStream stream;
        DirectoryChunk chunk;
        std::size_t next = 0;
        std::size_t pathLength = 0;
    };

    void step() {
        Folder& folder = m_stack.back();
        if (folder.next == folder.chunk.entries.size()) {
            // No status reads for entries past the limit: the walk fails on the first of them.
            const auto budget = static_cast<std::size_t>(std::clamp<std::int64_t>(
                m_maxEntries - m_itemCount + 1, 1, static_cast<std::int64_t>(chunkSize)));
            folder.next = 0;
            if (!folder.stream.readChunk(folder.chunk, budget,
                                         DirectoryStream::StatusReads::everything)) {
                if (folder.stream.readFailed()) {
                    fail(ReviewError::Kind::unavailable);
                }
                m_stack.pop_back();
                return;
            }
        }
        visit(folder, folder.chunk.entries[folder.next++]);
    }

    void visit(Folder& folder, const DirectoryEntry& entry) {
        if (m_options.stopToken.stop_requested()) {
            throw ScanCancelled();
        }
        if (++m_itemCount > m_maxEntries) {
            fail(ReviewError::Kind::limit);
        }
        if (m_options.pauses && m_itemCount % itemsBetweenPauses == 0) {
            std::this_thread::sleep_for(pauseLength);
        }
        // A failed read is tried once more for its reason; an item that reads now is recorded.
        const EntryStatus status = entry.statusFailed
                                       ? statusAt(folder.stream.fd(), folder.chunk.cName(entry))
                                       : entry.status;
        if (onAnotherMount(status, m_folderStatus)) {
            fail(ReviewError::Kind::unavailable);
        }
        m_path.resize(folder.pathLength);
        if (!m_path.empty()) {
            m_path += '/';
        }
        m_path += folder.chunk.name(entry);
        record(m_path, status);
        if (status.kind == EntryKind::directory) {
            descend(folder, entry);
        }
    }

    void descend(const Folder& parent, const DirectoryEntry& entry) {
        DirectoryStream child =
            DirectoryStream::openChild(parent.stream.fd(), parent.chunk.cName(entry));
        if (!child.valid()) {
            fail(ReviewError::Kind::unavailable);
        }
        push(std::move(child));  // invalidates `parent` and `entry`
    }

    void push(DirectoryStream stream) {
        Folder folder;
        folder.stream = std::move(stream);
        folder.pathLength = m_path.size();
        m_stack.push_back(std::move(folder));
    }

    void record(std::string_view relativePath, const EntryStatus& status) {
        if (!status.hasModified) {
            fail(ReviewError::Kind::unavailable);
        }
        m_records.add(relativePath, status);
        m_allocatedBytes += status.allocatedBytes;
    }

    const EntryStatus m_folderStatus;
    const std::int64_t m_maxEntries;
    const ScanOptions& m_options;
    RecordList m_records;
    std::int64_t m_itemCount = 0;
    std::int64_t m_allocatedBytes = 0;
    std::string m_path;  // relative path of the item being visited
    std::vector<Folder> m_stack;
};

// The folder's own status, once it is known to be a plain folder that is not a mount point.
EntryStatus checkedFolderStatus(const std::filesystem::path& target) {
    const EntryStatus status = statusAt(AT_FDCWD, target.c_str());
    const EntryStatus parent = statusAt(AT_FDCWD, target.parent_path().c_str());
    if (status.kind != EntryKind::directory || onAnotherMount(status, parent)) {
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
    if (isBroad(target.native())) {
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
    const EntryStatus opened = statusAt(stream.fd(), "");
    if (opened.identity != checked.identity) {
        throw FileTrashError();
    }
    SnapshotWalk walk(opened, maxEntries, options);
    walk.run(std::move(stream));
    return {target,
            category,
            detail,
            walk.allocatedBytes(),
            walk.itemCount(),
            dateFromFileTime(opened.modifiedSeconds, opened.modifiedNanoseconds),
            opened.identity.text(),
            walk.fingerprint()};
}

}  // namespace tallowmere::StorageLocationTrash
