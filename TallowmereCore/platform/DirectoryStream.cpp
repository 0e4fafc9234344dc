#include "platform/DirectoryStream.h"

#include <fcntl.h>

#include <cerrno>
#include <cstring>

#include "platform/FileDescriptor.h"

namespace tallowmere {

namespace {

bool isDotOrDotDot(const char* name) {
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

// What the directory entry alone tells; `unknown` means a status read is needed.
EntryKind kindFromDirectoryEntry(unsigned char type) {
    switch (type) {
        case DT_DIR:
            return EntryKind::directory;
        case DT_LNK:
            return EntryKind::symbolicLink;
        case DT_FIFO:
        case DT_SOCK:
        case DT_CHR:
        case DT_BLK:
            return EntryKind::other;
        default:
            return EntryKind::unknown;  // DT_REG needs its sizes; DT_UNKNOWN its kind
    }
}

}  // namespace

DirectoryStream DirectoryStream::openChild(int parentFd, const char* name) {
    const int fd = ::openat(parentFd, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (fd < 0) {
        return {};
    }
    return adopt(fd);
}

DirectoryStream DirectoryStream::adopt(int directoryFd) {
    FileDescriptor owned(directoryFd);
    DirectoryStream stream;
    if (DIR* directory = ::fdopendir(owned.get())) {
        owned.release();
        stream.m_directory.reset(directory);
    }
    return stream;
}

int DirectoryStream::fd() const {
    return ::dirfd(m_directory.get());
}

bool DirectoryStream::readChunk(DirectoryChunk& chunk, std::size_t limit, StatusReads statusReads,
                                const std::stop_token& stopToken) {
    chunk.names.clear();
    chunk.entries.clear();
    while (chunk.entries.size() < limit) {
        errno = 0;
        const dirent* item = ::readdir(m_directory.get());
        if (item == nullptr) {
            m_readFailed = m_readFailed || errno != 0;
            break;
        }
        if (isDotOrDotDot(item->d_name)) {
            continue;
        }
        const std::size_t length = std::strlen(item->d_name);
        DirectoryEntry entry;
        entry.nameOffset = static_cast<std::uint32_t>(chunk.names.size());
        entry.nameLength = static_cast<std::uint16_t>(length);
        entry.status.kind = kindFromDirectoryEntry(item->d_type);
        chunk.names.append(item->d_name, length + 1);
        chunk.entries.push_back(entry);
    }
    for (auto& entry : chunk.entries) {
        if (stopToken.stop_requested()) {
            break;
        }
        const EntryKind kind = entry.status.kind;
        const bool kindNeedsStatus = kind == EntryKind::regularFile || kind == EntryKind::unknown;
        if (statusReads == StatusReads::everything ||
            (statusReads == StatusReads::filesAndUnknown && kindNeedsStatus)) {
            entry.statusFailed = !readEntryStatus(fd(), chunk.cName(entry), entry.status);
        }
    }
    return !chunk.entries.empty();
}

}  // namespace tallowmere
