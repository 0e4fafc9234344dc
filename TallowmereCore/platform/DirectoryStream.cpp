#include "platform/DirectoryStream.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace tallowmere {

namespace {

// One read fills this much: about 2,000 names, which halves the calls of a smaller buffer on
// wide folders. Kept under 64 KiB, since glibc consolidates its free lists each time a block
// that large is freed, and a walk frees one per folder.
constexpr std::size_t bufferBytes = 60 * 1024;

// A record of getdents64, as the kernel lays it out.
struct KernelDirent64 {
    std::uint64_t inode;
    std::int64_t offset;
    unsigned short length;
    unsigned char type;
    char name[1];
};

bool isDotOrDotDot(const char* name) {
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

// What the directory entry alone tells; `unknown` when the file system does not say.
EntryKind kindFromDirectoryEntry(unsigned char type) {
    switch (type) {
        case DT_DIR:
            return EntryKind::directory;
        case DT_REG:
            return EntryKind::regularFile;
        case DT_LNK:
            return EntryKind::symbolicLink;
        case DT_FIFO:
        case DT_SOCK:
        case DT_CHR:
        case DT_BLK:
            return EntryKind::other;
        default:
            return EntryKind::unknown;
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
    DirectoryStream stream;
    stream.m_fd = FileDescriptor(directoryFd);
    return stream;
}

bool DirectoryStream::nextRecord(const char*& name, unsigned char& type) {
    while (m_position == m_filled) {
        if (m_ended) {
            return false;
        }
        if (!m_buffer) {
            m_buffer = std::make_unique_for_overwrite<char[]>(bufferBytes);
        }
        const long count = ::syscall(SYS_getdents64, m_fd.get(), m_buffer.get(), bufferBytes);
        if (count <= 0) {
            m_readFailed = count < 0;
            m_readError = count < 0 ? errno : 0;
            m_ended = true;
            m_buffer.reset();
            m_filled = m_position = 0;
            return false;
        }
        m_filled = static_cast<std::size_t>(count);
        m_position = 0;
    }
    const auto* record = reinterpret_cast<const KernelDirent64*>(m_buffer.get() + m_position);
    m_position += record->length;
    name = record->name;
    type = record->type;
    return true;
}

bool DirectoryStream::readChunk(DirectoryChunk& chunk, std::size_t limit, StatusReads statusReads,
                                const std::stop_token& stopToken) {
    chunk.names.clear();
    chunk.entries.clear();
    chunk.statuses.clear();
    const char* name = nullptr;
    unsigned char type = DT_UNKNOWN;
    while (chunk.entries.size() < limit && nextRecord(name, type)) {
        if (isDotOrDotDot(name)) {
            continue;
        }
        const std::size_t length = std::strlen(name);
        chunk.entries.push_back({static_cast<std::uint32_t>(chunk.names.size()),
                                 static_cast<std::uint16_t>(length), kindFromDirectoryEntry(type),
                                 false});
        chunk.names.append(name, length + 1);
    }
    if (statusReads == StatusReads::everything) {
        chunk.statuses.resize(chunk.entries.size());
        for (std::size_t index = 0; index < chunk.entries.size(); ++index) {
            if (stopToken.stop_requested()) {
                break;
            }
            DirectoryEntry& entry = chunk.entries[index];
            entry.statusFailed = !readStatus(chunk, entry, chunk.statuses[index]);
        }
    }
    return !chunk.entries.empty();
}

bool DirectoryStream::readStatus(const DirectoryChunk& chunk, const DirectoryEntry& entry,
                                 EntryStatus& status) const {
    return readEntryStatus(fd(), chunk.cName(entry), status);
}

}  // namespace tallowmere
