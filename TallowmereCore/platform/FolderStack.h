#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/DirectoryStream.h"
#include "platform/EntryStatus.h"
#include "platform/FileIdentity.h"

namespace tallowmere {

// The folders a depth-first walk in listing order is inside, innermost last. At most
// `openAtMost` of them are open at once: deeper down, the outermost open one is parked (the
// rest of its listing read into memory, its descriptor closed) and opened again through ".."
// from the folder below when the walk comes back to it, and used only if it is still the same
// folder. So a tree of any depth is walked within a small open-file limit, and a folder is
// never looked up again by its path. `Place` is what the walk keeps of each folder. Each open
// folder's stream is shared, so work handed to another thread can read statuses in the folder
// after the walk has moved on; only the walk reads its listing.
template <typename Place>
class FolderStack {
public:
    static constexpr std::size_t openAtMost = 16;

    struct Level {
        Place place;
        std::shared_ptr<DirectoryStream> stream;  // none while parked
        DirectoryChunk chunk;
        std::size_t next = 0;          // the chunk's next entry to take up
        std::uint32_t chunkIndex = 0;  // the listing index of the chunk's first entry
        bool listed = false;           // the rest of the listing is all in `chunk`
        int readError = 0;             // why reading the listing stopped early, if it did
        FileIdentity identity;         // to know the folder again when it is opened anew
    };

    enum class Next {
        entry,     // `top().chunk.entries[top().next]` is the next entry
        finished,  // the listing is done: pop()
        failed,    // the listing could not be read to its end (`top().readError`): pop()
    };

    explicit FolderStack(DirectoryStream::StatusReads statusReads) : m_statusReads(statusReads) {}

    bool empty() const { return m_levels.empty(); }
    Level& top() { return m_levels.back(); }

    // Enters `stream`'s folder; may park an outer one, so references to levels go stale.
    void push(Place place, DirectoryStream stream) {
        if (m_open == openAtMost) {
            park(*std::ranges::find_if(m_levels,
                                       [](const Level& level) { return level.stream != nullptr; }));
        }
        Level level;
        if (!m_spareChunks.empty()) {
            level.chunk = std::move(m_spareChunks.back());
            m_spareChunks.pop_back();
        }
        level.place = std::move(place);
        level.stream = std::make_shared<DirectoryStream>(std::move(stream));
        m_levels.push_back(std::move(level));
        ++m_open;
    }

    // Makes the innermost folder's next entry ready, reading at most `limit` more.
    Next advance(std::size_t limit) {
        Level& level = top();
        if (level.next < level.chunk.entries.size()) {
            return Next::entry;
        }
        if (level.listed) {
            return level.readError != 0 ? Next::failed : Next::finished;
        }
        level.chunkIndex += static_cast<std::uint32_t>(level.chunk.entries.size());
        level.next = 0;
        if (level.stream->readChunk(level.chunk, limit, m_statusReads)) {
            return Next::entry;
        }
        level.readError = level.stream->readFailed() ? level.stream->readError() : 0;
        return level.readError != 0 ? Next::failed : Next::finished;
    }

    // Leaves the innermost folder. False when the folder it returns to was parked and is no
    // longer there as it was; that one then has nothing more to give, and the caller says why.
    bool pop() {
        Level finished = std::move(m_levels.back());
        m_levels.pop_back();
        --m_open;
        if (m_spareChunks.size() < openAtMost) {
            finished.chunk.names.clear();
            finished.chunk.entries.clear();
            finished.chunk.statuses.clear();
            m_spareChunks.push_back(std::move(finished.chunk));
        }
        if (m_levels.empty() || m_levels.back().stream) {
            return true;
        }
        Level& parent = m_levels.back();
        DirectoryStream reopened = DirectoryStream::openChild(finished.stream->fd(), "..");
        EntryStatus status;
        if (reopened.valid() && readEntryStatus(reopened.fd(), "", status) &&
            status.identity == parent.identity) {
            parent.stream = std::make_shared<DirectoryStream>(std::move(reopened));
            ++m_open;
            return true;
        }
        parent.next = parent.chunk.entries.size();
        parent.readError = 0;
        return false;
    }

private:
    void park(Level& level) {
        if (!level.listed) {
            DirectoryChunk more;
            while (level.stream->readChunk(more, chunkSize, m_statusReads)) {
                const auto offset = static_cast<std::uint32_t>(level.chunk.names.size());
                level.chunk.names += more.names;
                for (DirectoryEntry entry : more.entries) {
                    entry.nameOffset += offset;
                    level.chunk.entries.push_back(entry);
                }
                level.chunk.statuses.insert(level.chunk.statuses.end(), more.statuses.begin(),
                                            more.statuses.end());
            }
            level.readError = level.stream->readFailed() ? level.stream->readError() : 0;
            level.listed = true;
        }
        EntryStatus status;
        if (readEntryStatus(level.stream->fd(), "", status)) {
            level.identity = status.identity;
        }
        level.stream.reset();
        --m_open;
    }

    static constexpr std::size_t chunkSize = 1024;

    DirectoryStream::StatusReads m_statusReads;
    std::vector<Level> m_levels;
    // Chunks of folders left, whose buffers the next folders entered read into.
    std::vector<DirectoryChunk> m_spareChunks;
    std::size_t m_open = 0;  // levels whose folder is open
};

}  // namespace tallowmere
