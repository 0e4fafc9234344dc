#include "platform/Trash.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <ctime>
#include <optional>
#include <string_view>

#include "platform/AtomicFile.h"
#include "platform/EntryStatus.h"
#include "platform/FileDescriptor.h"
#include "platform/FileSystemError.h"
#include "platform/PathRules.h"
#include "platform/Renaming.h"
#include "platform/TrashInfo.h"

namespace tallowmere::Trash {

namespace {

constexpr std::string_view infoSuffix = ".trashinfo";
constexpr unsigned maxCandidates = 100000;
constexpr std::size_t maxInfoBytes = 65536;

FileSystemError trashMoveError(int code) {
    if (code == EXDEV) {
        return {code,
                "Its trash is on another mount, and items are never copied between file systems, "
                "so it was left in place."};
    }
    return Renaming::failure(code);
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

std::string infoName(const std::string& name) {
    return name + std::string(infoSuffix);
}

// The item's original place as its info file records it: absolute in the home trash, relative
// to the mount point in a trash at the top of a mount.
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
        if (!writeAll(file.get(), content)) {
            throw FileSystemError::fromErrno(errno);
        }
        if (::fsync(file.get()) != 0 || ::fsync(m_infoFd) != 0) {
            throw FileSystemError::fromErrno(errno);
        }
        return true;
    }

    void keep() { m_kept = true; }

private:
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
        InfoFile infoFile(trash.info.get(), infoName(candidate));
        if (!infoFile.create(info)) {
            continue;
        }
        if (Renaming::moveWithoutReplacing(parentFd, name.c_str(), trash.files.get(),
                                           candidate.c_str())) {
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

// The former place `info` records, made absolute for a trash at the top of a mount.
std::optional<std::filesystem::path> recordedPlace(std::string_view info,
                                                   const TrashFolder& trash) {
    const auto path = trashInfoPath(info);
    if (!path || path->empty()) {
        return std::nullopt;
    }
    if (path->front() == '/' || trash.topFolder.empty()) {
        return PathRules::standardized(*path);
    }
    return PathRules::standardized(trash.topFolder / *path);
}

[[noreturn]] void failNotTrashed(const std::string& why) {
    throw FileSystemError(ENOENT, why);
}

}  // namespace

NoLongerInTrash::NoLongerInTrash() : FileSystemError(ENOENT, "It is no longer in the Trash.") {}

TrashedItem moveIn(int parentFd, const std::filesystem::path& item) {
    const auto path = PathRules::standardized(item);
    const std::string name = path.filename();
    if (name.empty() || name == "." || name == "..") {
        throw FileSystemError(EINVAL, "This is not an item that can be moved to the trash.");
    }
    EntryStatus parentStatus;
    if (!readEntryStatus(parentFd, "", parentStatus)) {
        throw FileSystemError::fromErrno(errno);
    }
    TrashFolder trash = trashFolderFor(path.parent_path(), parentStatus);
    if (trash.location == path || PathRules::isInside(trash.location.native(), path.native())) {
        throw FileSystemError(EINVAL, "The trash lies inside this item, so it cannot go there.");
    }
    const std::string info = trashInfoText(recordedPath(path, trash.topFolder), std::time(nullptr));
    const std::string trashName = moveUnderFreeName(parentFd, name, trash, info);
    return {trash.location / "files" / trashName, std::move(trash), trashName};
}

TrashedItem find(const std::filesystem::path& location, const std::filesystem::path& original,
                 Purpose purpose) {
    const std::string notDone = purpose == Purpose::restore ? "restored" : "deleted";
    const auto path = PathRules::standardized(location);
    if (!path.is_absolute() || path.parent_path().filename() != "files") {
        failNotTrashed("It is not in a trash’s files folder, so it is not " + notDone +
                       " from there.");
    }
    auto trash = existingTrashFolder(path.parent_path().parent_path());
    if (!trash) {
        failNotTrashed("It is not in one of your trash folders, so it is not " + notDone +
                       " from there.");
    }
    const std::string name = path.filename();
    EntryStatus status;
    if (!readEntryStatus(trash->files.get(), name.c_str(), status) && errno == ENOENT) {
        throw NoLongerInTrash();
    }
    const auto info = AtomicFile::readWholeFileAt(trash->info.get(), infoName(name), maxInfoBytes);
    const auto place = info ? recordedPlace(*info, *trash) : std::nullopt;
    if (!place || *place != PathRules::standardized(original)) {
        failNotTrashed(
            std::string("Its trash record does not name this place as where it came from, so it "
                        "is not ") +
            (purpose == Purpose::restore ? "restored there." : "deleted."));
    }
    return {path, std::move(*trash), name};
}

void moveOut(const TrashedItem& item, int folderFd, const std::string& name) {
    if (!Renaming::moveWithoutReplacing(item.folderFd(), item.name.c_str(), folderFd,
                                        name.c_str())) {
        throw Renaming::failure(errno);
    }
}

void forget(const TrashedItem& item) {
    ::unlinkat(item.trash.info.get(), infoName(item.name).c_str(), 0);
}

}  // namespace tallowmere::Trash
