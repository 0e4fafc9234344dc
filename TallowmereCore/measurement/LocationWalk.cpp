#include "measurement/LocationWalk.h"

#include <cerrno>

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tallowmere {

namespace {

constexpr std::size_t entriesPerRead = 1024;
// Folders the walk keeps open at once, whatever the depth: deeper down, the shallowest open one
// is parked (its listing read to the end, its descriptor closed) and opened again through ".."
// when the walk comes back to it, so that a tree of any depth fits a small open-file limit.
constexpr std::size_t openFoldersAtMost = 16;

// `more` appended to `chunk`, its names moved with it.
void append(DirectoryChunk& chunk, const DirectoryChunk& more) {
    const auto offset = static_cast<std::uint32_t>(chunk.names.size());
    chunk.names += more.names;
    for (DirectoryEntry entry : more.entries) {
        entry.nameOffset += offset;
        chunk.entries.push_back(entry);
    }
}

class LocationWalk {
public:
    LocationWalk(const LocationScope& scope, CountedIdentities& counted,
                 const WalkSettings& settings)
        : m_scope(scope),
          m_counted(counted),
          m_settings(settings),
          m_tally(scope),
          m_pace(settings.pauses, settings.meter) {
        m_pace.entered(scope.listIndex);
    }

    StorageFinding run(DirectoryStream root) {
        push(std::make_shared<const WalkFolder>(m_scope.rootFolder()), std::move(root));
        while (!m_stack.empty()) {
            if (!step()) {
                return std::move(m_tally).finding(true);
            }
        }
        return std::move(m_tally).finding(false);
    }

private:
    struct Level {
        std::shared_ptr<const WalkFolder> folder;
        DirectoryStream stream;  // closed while parked
        DirectoryChunk chunk;
        std::size_t next = 0;
        std::uint32_t chunkIndex = 0;  // the listing index of the chunk's first entry
        bool listed = false;           // the rest of the listing is all in `chunk`
        FileIdentity identity;         // to know the folder again when it is opened anew
    };

    // Takes up the next entry of the innermost open folder; false when the limit is passed.
    bool step() {
        Level& level = m_stack.back();
        if (level.next == level.chunk.entries.size()) {
            if (level.listed) {
                pop();
                return true;
            }
            level.chunkIndex += static_cast<std::uint32_t>(level.chunk.entries.size());
            level.next = 0;
            if (!level.stream.readChunk(level.chunk, entriesPerRead,
                                        DirectoryStream::StatusReads::none)) {
                if (level.stream.readFailed()) {
                    m_tally.countSkipped(*level.folder, level.stream.readError());
                }
                pop();
                return true;
            }
        }
        const std::size_t position = level.next++;
        return visit(level, position);
    }

    bool visit(Level& level, std::size_t position) {
        m_settings.throwIfStopped();
        DirectoryEntry& entry = level.chunk.entries[position];
        const std::string_view name = level.chunk.name(entry);
        if (level.folder->isNested(name)) {
            return true;
        }
        if (++m_entries > m_settings.maxEntries) {
            return false;
        }
        m_pace.entryWalked();
        level.stream.completeStatus(level.chunk, entry);
        const auto index = static_cast<std::uint32_t>(level.chunkIndex + position);
        if (entry.statusFailed) {
            m_tally.countSkipped(*level.folder, index, name, errno);
            return true;
        }
        if (entry.status.kind == EntryKind::directory) {
            descend(level, entry, index);
        } else if (entry.status.kind == EntryKind::regularFile) {
            m_pace.fileMeasured(entry.status.allocatedBytes);
            countOnce(*level.folder, index, name, entry.status);
        }
        return true;
    }

    void descend(const Level& parent, const DirectoryEntry& entry, std::uint32_t index) {
        DirectoryStream child =
            DirectoryStream::openChild(parent.stream.fd(), parent.chunk.cName(entry));
        if (!child.valid()) {
            m_tally.countSkipped(*parent.folder, index, parent.chunk.name(entry), errno);
            return;
        }
        auto folder = std::make_shared<const WalkFolder>(
            childFolder(*parent.folder, parent.chunk.name(entry), index, m_scope.checksFiles(),
                        m_scope.nestedFolders));
        push(std::move(folder), std::move(child));  // invalidates `parent` and `entry`
    }

    void push(std::shared_ptr<const WalkFolder> folder, DirectoryStream stream) {
        if (m_open == openFoldersAtMost) {
            park(*std::ranges::find_if(m_stack,
                                       [](const Level& level) { return level.stream.valid(); }));
        }
        Level level;
        level.folder = std::move(folder);
        level.stream = std::move(stream);
        m_stack.push_back(std::move(level));
        ++m_open;
    }

    // Reads the rest of the folder's listing and closes it.
    void park(Level& level) {
        if (!level.listed) {
            DirectoryChunk more;
            while (
                level.stream.readChunk(more, entriesPerRead, DirectoryStream::StatusReads::none)) {
                append(level.chunk, more);
            }
            if (level.stream.readFailed()) {
                m_tally.countSkipped(*level.folder, level.stream.readError());
            }
            level.listed = true;
        }
        EntryStatus status;
        if (readEntryStatus(level.stream.fd(), "", status)) {
            level.identity = status.identity;
        }
        level.stream = DirectoryStream();
        --m_open;
    }

    // Leaves the innermost folder; a parked folder it returns to is opened again from it,
    // through "..", and only if it is still the folder it was.
    void pop() {
        Level finished = std::move(m_stack.back());
        m_stack.pop_back();
        --m_open;
        if (m_stack.empty() || m_stack.back().stream.valid()) {
            return;
        }
        Level& parent = m_stack.back();
        DirectoryStream reopened = finished.stream.valid()
                                       ? DirectoryStream::openChild(finished.stream.fd(), "..")
                                       : DirectoryStream();
        EntryStatus status;
        if (reopened.valid() && readEntryStatus(reopened.fd(), "", status) &&
            status.identity == parent.identity) {
            parent.stream = std::move(reopened);
            ++m_open;
            return;
        }
        // Moved away meanwhile: what is left of it cannot be walked as it was.
        m_tally.countSkipped(*parent.folder, ENOENT);
        parent.next = parent.chunk.entries.size();
    }

    void countOnce(const WalkFolder& folder, std::uint32_t index, std::string_view name,
                   const EntryStatus& status) {
        if (m_scope.mayRecur(status) && !m_counted.insert(status.identity).second) {
            return;
        }
        m_tally.countFile(folder, index, name, status);
    }

    const LocationScope& m_scope;
    CountedIdentities& m_counted;
    const WalkSettings& m_settings;
    LocationTally m_tally;
    WalkPace m_pace;
    std::int64_t m_entries = 0;
    std::vector<Level> m_stack;
    std::size_t m_open = 0;  // levels whose folder is open
};

}  // namespace

StorageFinding walkLocation(const LocationScope& scope, DirectoryStream folder,
                            CountedIdentities& counted, const WalkSettings& settings) {
    LocationWalk walk(scope, counted, settings);
    return walk.run(std::move(folder));
}

}  // namespace tallowmere
