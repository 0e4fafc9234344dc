#include "measurement/LocationWalk.h"

#include <cerrno>
#include <cstdint>
#include <memory>
#include <string_view>

#include "platform/FolderStack.h"

namespace tallowmere {

namespace {

constexpr std::size_t entriesPerRead = 1024;

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

    StorageFinding run() {
        auto root = std::make_shared<const WalkFolder>(m_scope.rootFolder());
        OpenedFolder opened = openForWalk(m_scope);
        if (!opened.stream.valid()) {
            m_tally.countSkipped(*root, std::move(opened.reason));
            return std::move(m_tally).finding(false);
        }
        m_stack.push(std::move(root), std::move(opened.stream));
        while (!m_stack.empty()) {
            if (!step()) {
                return std::move(m_tally).finding(true);
            }
        }
        return std::move(m_tally).finding(false);
    }

private:
    using Stack = FolderStack<std::shared_ptr<const WalkFolder>>;

    // Takes up the next entry of the innermost open folder; false when the limit is passed.
    bool step() {
        switch (m_stack.advance(entriesPerRead)) {
            case Stack::Next::entry:
                break;
            case Stack::Next::failed:
                m_tally.countSkipped(*m_stack.top().place, m_stack.top().readError);
                [[fallthrough]];
            case Stack::Next::finished:
                leave();
                return true;
        }
        Stack::Level& level = m_stack.top();
        return visit(level, level.next++);
    }

    void leave() {
        if (!m_stack.pop()) {
            // The folder it came back to was moved away meanwhile: the rest of it is unread.
            m_tally.countSkipped(*m_stack.top().place, ENOENT);
        }
    }

    bool visit(Stack::Level& level, std::size_t position) {
        m_settings.throwIfStopped();
        DirectoryEntry& entry = level.chunk.entries[position];
        const std::string_view name = level.chunk.name(entry);
        const WalkFolder& folder = *level.place;
        if (folder.isNested(name)) {
            return true;
        }
        if (++m_entries > m_settings.maxEntries) {
            return false;
        }
        m_pace.entryWalked();
        level.stream.completeStatus(level.chunk, entry);
        const auto index = static_cast<std::uint32_t>(level.chunkIndex + position);
        if (entry.statusFailed) {
            m_tally.countSkipped(folder, index, name, errno);
            return true;
        }
        if (entry.status.kind == EntryKind::directory) {
            descend(level, entry, index);
        } else if (entry.status.kind == EntryKind::regularFile) {
            m_pace.fileMeasured(entry.status.allocatedBytes);
            countOnce(folder, index, name, entry.status);
        }
        return true;
    }

    void descend(const Stack::Level& parent, const DirectoryEntry& entry, std::uint32_t index) {
        DirectoryStream child =
            DirectoryStream::openChild(parent.stream.fd(), parent.chunk.cName(entry));
        if (!child.valid()) {
            m_tally.countSkipped(*parent.place, index, parent.chunk.name(entry), errno);
            return;
        }
        auto folder = std::make_shared<const WalkFolder>(
            childFolder(*parent.place, parent.chunk.name(entry), index, m_scope.checksFiles(),
                        m_scope.nestedFolders));
        m_stack.push(std::move(folder), std::move(child));  // invalidates `parent` and `entry`
    }

    void countOnce(const WalkFolder& folder, std::uint32_t index, std::string_view name,
                   const EntryStatus& status) {
        if (m_scope.mayRecur(status) && !m_counted.insert(status.identity)) {
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
    Stack m_stack{DirectoryStream::StatusReads::none};
};

}  // namespace

StorageFinding walkLocation(const LocationScope& scope, CountedIdentities& counted,
                            const WalkSettings& settings) {
    LocationWalk walk(scope, counted, settings);
    return walk.run();
}

}  // namespace tallowmere
