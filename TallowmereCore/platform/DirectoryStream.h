#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "platform/EntryStatus.h"
#include "platform/FileDescriptor.h"

namespace tallowmere {

// One entry of a directory chunk: its name (in the chunk's name buffer) and its kind as the
// directory entry tells it. Small, since a walk lists every entry it meets.
struct DirectoryEntry {
    std::uint32_t nameOffset = 0;
    std::uint16_t nameLength = 0;
    EntryKind kind = EntryKind::unknown;  // `unknown` when the file system does not say
    bool statusFailed = false;            // its status was asked for and could not be read
};

// A run of consecutive entries of one directory, in the order the file system lists them.
// Reused between reads so a walk allocates per directory, not per entry.
struct DirectoryChunk {
    std::string names;
    std::vector<DirectoryEntry> entries;
    // Each entry's status, at the entry's index, when every status was read with the chunk.
    std::vector<EntryStatus> statuses;

    std::string_view name(const DirectoryEntry& entry) const {
        return {names.data() + entry.nameOffset, entry.nameLength};
    }
    // NUL-terminated, for system calls relative to the directory.
    const char* cName(const DirectoryEntry& entry) const { return names.data() + entry.nameOffset; }
};

// An open directory read in chunks. Folders, symbolic links and special files known from the
// directory entry need no further call; statuses are read relative to the directory.
// Never follows a symbolic link. Move-only; closes the directory on destruction.
class DirectoryStream {
public:
    // Opens `name` inside the open directory `parentFd` without following a link. Returns an
    // invalid stream and sets errno when it cannot.
    static DirectoryStream openChild(int parentFd, const char* name);
    // Takes ownership of an open directory descriptor.
    static DirectoryStream adopt(int directoryFd);

    // Which entries get a status read while a chunk is read.
    enum class StatusReads {
        none,        // the kinds the directory entries tell are enough
        everything,  // every entry, folders and links included
    };

    bool valid() const { return m_fd.valid(); }
    int fd() const { return m_fd.get(); }

    // Replaces `chunk` with at most `limit` further entries ("." and ".." left out). Returns
    // false when the directory holds no more; `readFailed()` then tells whether reading
    // stopped because of an error rather than at the end.
    // When `stopToken` asks to stop, the status reads end early and the chunk is unusable.
    bool readChunk(DirectoryChunk& chunk, std::size_t limit, StatusReads statusReads,
                   const std::stop_token& stopToken = {});
    bool readFailed() const { return m_readFailed; }
    // The errno value of the failed read.
    int readError() const { return m_readError; }

    // Reads the status of `entry`, of a chunk this stream read. Returns false and sets errno
    // when it cannot.
    bool readStatus(const DirectoryChunk& chunk, const DirectoryEntry& entry,
                    EntryStatus& status) const;

private:
    // Takes the next entry from the buffer, refilling it from the kernel; false at the end.
    bool nextRecord(const char*& name, unsigned char& type);

    FileDescriptor m_fd;
    // Raw records from getdents64; allocated on the first read and freed at the end, since a
    // finished folder may stay open a while for its sub-folders' sake.
    std::unique_ptr<char[]> m_buffer;
    std::size_t m_filled = 0;
    std::size_t m_position = 0;
    bool m_ended = false;
    bool m_readFailed = false;
    int m_readError = 0;
};

}  // namespace tallowmere
