#include "platform/Trash.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <ctime>
#include <string>
#include <string_view>

#include "platform/EntryStatus.h"
#include "platform/FileDescriptor.h"
#include "platform/FileSystemError.h"
#include "platform/FolderDescriptors.h"
#include "platform/PathRules.h"
#include "platform/TrashFolder.h"
#include "platform/TrashInfo.h"

namespace tallowmere::Trash {

namespace {

constexpr std::string_view infoSuffix = ".trashinfo";
constexpr unsigned maxCandidates = 100000;

// EINVAL from renameat2 means RENAME_NOREPLACE is unsupported; a plain rename could replace
// what lies at the destination, so there is no fallback.
FileSystemError renameError(int code) {
    if (code == EINVAL) {
        return {code, "This file system cannot move items without the risk of replacing another."};
    }
    return FileSystemError::fromErrno(code);
}

FileSystemError trashMoveError(int code) {
    if (code == EXDEV) {
        return {code,
                "Its trash is on another mount, and items are never copied between file systems, "
                "so it was left in place."};
    }
    return renameError(code);
}

// The trash's name for the item: its own, or "name.N" when that is taken; cut at a character
// boundary so that the info file's name still fits.
std::string candidateName(const std::string& name, unsigned number) {
    const std::string suffix = number == 1 ? "" : "." + std::to_string(number);
    std::size_t length = std::min(name.size(), NAME_MAX - infoSuffix.size() - suffix.size());
    while (length > 0 && length < name.size() &&
           (static_cast<unsigned char>(name[length]) & 0xC0) == 0x80) {
        --length;
    }
    return name.substr(0, length) + suffix;
}

// The item's original place as its info file records it.
std::string recordedPath(const std::filesystem::path& item, const std::filesystem::path& top) {
    if (top.empty()) {
        return item.native();
    }
    return item.native().substr(top == "/" ? 1 : top.native().size() + 1);
}

// One info file in info/, removed again when it goes away unless the move it describes happened.
class InfoFile {
public:
    InfoFile(int infoFd, std::string fileName)
        : m_infoFd(infoFd), m_fileName(std::move(fileName)) {}
    InfoFile(const InfoFile&) = delete;
    InfoFile& operator=(const InfoFile&) = delete;
    ~InfoFile() {
        if (m_created && !m_kept) {
            ::unlinkat(m_infoFd, m_fileName.c_str(), 0);
        }
    }

    // Creates the file exclusively, so that two trashings never share one record, and writes
    // `content` to disk. Returns false when the name is taken; throws FileSystemError when the
    // file cannot be written.
    bool create(std::string_view content) {
        const FileDescriptor file(::openat(m_infoFd, m_fileName.c_str(),
                                           O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                                           0600));
        if (!file.valid() && errno == EEXIST) {
            return false;
        }
        if (!file.valid()) {
            throw FileSystemError::fromErrno(errno);
        }
        m_created = true;
        writeAll(file.get(), content);
        if (::fsync(file.get()) != 0 || ::fsync(m_infoFd) != 0) {
            throw FileSystemError::fromErrno(errno);
        }
        return true;
    }

    void keep() { m_kept = true; }

private:
    static void writeAll(int fd, std::string_view bytes) {
        while (!bytes.empty()) {
            const ssize_t written = ::write(fd, bytes.data(), bytes.size());
            if (written < 0 && errno != EINTR) {
                throw FileSystemError::fromErrno(errno);
            }
            bytes.remove_prefix(written > 0 ? static_cast<std::size_t>(written) : 0);
        }
    }

    int m_infoFd;
    std::string m_fileName;
    bool m_created = false;
    bool m_kept = false;
};

// Moves `name` from `parentFd` into the trash under the first free name, its info file written
// first; returns that name.
std::string moveUnderFreeName(int parentFd, const std::string& name, const TrashFolder& trash,
                              std::string_view info) {
    for (unsigned number = 1; number <= maxCandidates; ++number) {
        const std::string candidate = candidateName(name, number);
        InfoFile infoFile(trash.info.get(), candidate + std::string(infoSuffix));
        if (!infoFile.create(info)) {
            continue;
        }
        if (::renameat2(parentFd, name.c_str(), trash.files.get(), candidate.c_str(),
                        RENAME_NOREPLACE) == 0) {
            infoFile.keep();
            return candidate;
        }
        // EEXIST: an item without a record lies in files/ under this name.
        if (errno != EEXIST) {
            throw trashMoveError(errno);
        }
    }
    throw FileSystemError(EEXIST, "The trash already holds too many items of this name.");
}

FileDescriptor openFormerFolder(const std::filesystem::path& folder) {
    try {
        return openFolderWithoutLinks(folder);
    } catch (const FileSystemError& error) {
        if (error.code() == ENOENT) {
            throw FileSystemError(ENOENT, "The folder it was in no longer exists.");
        }
        throw;
    }
}

// Removes the info file of an item just taken out of `filesFd`. A failure is not reported:
// the item is back, and a stale record only leaves a dead entry in the desktop's Trash.
void forgetInfoFile(int filesFd, const std::string& name) {
    const FileDescriptor trash = openFolderAt(filesFd, "..", O_PATH);
    const FileDescriptor info =
        trash.valid() ? openFolderAt(trash.get(), "info", O_PATH) : FileDescriptor();
    if (info.valid()) {
        ::unlinkat(info.get(), (name + std::string(infoSuffix)).c_str(), 0);
    }
}

}  // namespace

TrashedItem moveToTrash(const std::filesystem::path& item, const FileIdentity& expected) {
    const auto path = PathRules::standardized(item);
    const std::string name = path.filename();
    if (name.empty() || name == "." || name == "..") {
        throw FileSystemError(EINVAL, "This is not an item that can be moved to the trash.");
    }
    const FileDescriptor parent = openFolderWithoutLinks(path.parent_path());
    EntryStatus parentStatus;
    EntryStatus itemStatus;  // read so that a missing item fails before a trash is created
    if (!readEntryStatus(parent.get(), "", parentStatus) ||
        !readEntryStatus(parent.get(), name.c_str(), itemStatus)) {
        throw FileSystemError::fromErrno(errno);
    }
    const TrashFolder trash = trashFolderFor(path.parent_path(), parentStatus);
    if (trash.location == path || PathRules::isInside(trash.location.native(), path.native())) {
        throw FileSystemError(EINVAL, "The trash lies inside this item, so it cannot go there.");
    }
    const std::string info = trashInfoText(recordedPath(path, trash.topFolder), std::time(nullptr));
    const std::string trashName = moveUnderFreeName(parent.get(), name, trash, info);
    EntryStatus moved;
    const bool matches =
        readEntryStatus(trash.files.get(), trashName.c_str(), moved) && moved.identity == expected;
    return {trash.location / "files" / trashName, matches};
}

void restore(const std::filesystem::path& trashed, const std::filesystem::path& original) {
    const auto source = PathRules::standardized(trashed);
    const auto target = PathRules::standardized(original);
    const FileDescriptor from = openFolderWithoutLinks(source.parent_path());
    const FileDescriptor to = openFormerFolder(target.parent_path());
    const std::string name = source.filename();
    if (::renameat2(from.get(), name.c_str(), to.get(), target.filename().c_str(),
                    RENAME_NOREPLACE) != 0) {
        throw renameError(errno);
    }
    if (source.parent_path().filename() == "files") {
        forgetInfoFile(from.get(), name);
    }
}

}  // namespace tallowmere::Trash
