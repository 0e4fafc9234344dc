#include "measurement/ParallelWalk.h"

#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

namespace tallowmere {

namespace {

constexpr std::size_t entriesPerTask = 1024;

// Part of a folder to walk: up to `entriesPerTask` entries from where the last part stopped.
struct FolderTask {
    std::size_t root = 0;
    std::shared_ptr<const WalkFolder> folder;
    std::shared_ptr<DirectoryStream> stream;  // once the folder is open
    // Until then, the folder that holds it, kept open so it is opened relative to it; none
    // for a location's own folder.
    std::shared_ptr<const DirectoryStream> parent;
    std::string name;
    std::uint32_t firstIndex = 0;  // the listing index of the part's first entry
};

struct RootState {
    const LocationScope* scope = nullptr;
    std::atomic<std::int64_t> pendingTasks = 0;  // made and not yet finished
    std::atomic<std::int64_t> entries = 0;
    std::atomic<bool> overLimit = false;
    // Set once every task is finished, under the walk's mutex.
    std::optional<LocationTally> tally;
};

// One thread's share: its own tally of each location, so counting takes no lock.
struct Walker {
    std::vector<std::optional<LocationTally>> tallies;
    DirectoryChunk chunk;
    WalkPace pace;
};

class ParallelWalk {
public:
    ParallelWalk(const std::vector<const LocationScope*>& roots, std::size_t threads,
                 const WalkSettings& settings)
        : m_settings(settings), m_roots(roots.size()) {
        for (std::size_t index = 0; index < roots.size(); ++index) {
            m_roots[index].scope = roots[index];
        }
        for (std::size_t index = 0; index < threads; ++index) {
            m_walkers.push_back(std::make_unique<Walker>(
                Walker{std::vector<std::optional<LocationTally>>(roots.size()),
                       {},
                       WalkPace(settings.pauses, settings.meter)}));
        }
        for (std::size_t index = roots.size(); index-- > 0;) {
            m_roots[index].pendingTasks = 1;
            m_tasks.push_back(
                {index,
                 std::make_shared<const WalkFolder>(m_roots[index].scope->rootFolder()),
                 nullptr,
                 nullptr,
                 {},
                 0});
        }
        for (std::size_t index = 1; index < threads; ++index) {
            m_threads.emplace_back([this, index] { helperLoop(*m_walkers[index]); });
        }
    }

    ParallelWalk(const ParallelWalk&) = delete;
    ParallelWalk& operator=(const ParallelWalk&) = delete;

    ~ParallelWalk() {
        {
            std::lock_guard lock(m_mutex);
            m_abandoned = true;
        }
        m_changed.notify_all();
    }

    void run(const WalkedHandler& onWalked) {
        for (std::size_t next = 0; next < m_roots.size();) {
            std::unique_lock lock(m_mutex);
            m_changed.wait(lock, [&] {
                return !m_tasks.empty() || m_roots[next].tally || m_failure ||
                       m_settings.stopToken.stop_requested();
            });
            if (m_failure) {
                std::rethrow_exception(m_failure);
            }
            m_settings.throwIfStopped();
            if (m_roots[next].tally) {
                LocationTally tally = std::move(*m_roots[next].tally);
                m_roots[next].tally.reset();
                lock.unlock();
                onWalked(next, std::move(tally), m_roots[next].overLimit);
                ++next;
                continue;
            }
            FolderTask task = takeTask();
            lock.unlock();
            walk(*m_walkers.front(), task);
        }
    }

private:
    FolderTask takeTask() {
        FolderTask task = std::move(m_tasks.back());
        m_tasks.pop_back();
        ++m_busy;
        return task;
    }

    void helperLoop(Walker& walker) {
        try {
            while (true) {
                std::unique_lock lock(m_mutex);
                m_changed.wait(lock, [&] {
                    return !m_tasks.empty() || m_busy == 0 || m_abandoned || m_failure;
                });
                if (m_tasks.empty() || m_abandoned || m_failure) {
                    return;
                }
                FolderTask task = takeTask();
                lock.unlock();
                walk(walker, task);
            }
        } catch (...) {
            {
                std::lock_guard lock(m_mutex);
                if (!m_failure) {
                    m_failure = std::current_exception();
                }
            }
            m_changed.notify_all();
        }
    }

    // Walks one task, then hands over the folders it found and finishes it.
    void walk(Walker& walker, FolderTask& task) {
        std::vector<FolderTask> found;
        RootState& root = m_roots[task.root];
        if (!root.overLimit) {
            LocationTally& tally = tallyOf(walker, task.root);
            if (open(task, tally)) {
                walkPart(walker, task, tally, found);
            }
        }
        finish(task.root, found);
    }

    LocationTally& tallyOf(Walker& walker, std::size_t root) {
        auto& tally = walker.tallies[root];
        if (!tally) {
            tally.emplace(*m_roots[root].scope);
        }
        return *tally;
    }

    bool open(FolderTask& task, LocationTally& tally) {
        if (task.stream) {
            return true;
        }
        if (!task.parent) {
            OpenedFolder root = openForWalk(*m_roots[task.root].scope);
            if (!root.stream.valid()) {
                tally.countSkipped(*task.folder, std::move(root.reason));
                return false;
            }
            task.stream = std::make_shared<DirectoryStream>(std::move(root.stream));
            return true;
        }
        DirectoryStream opened = DirectoryStream::openChild(task.parent->fd(), task.name.c_str());
        const int error = errno;
        task.parent.reset();
        if (!opened.valid()) {
            // Counted as the entry of its parent, as a walk in order meets it.
            tally.countSkipped(*task.folder, error);
            return false;
        }
        task.stream = std::make_shared<DirectoryStream>(std::move(opened));
        return true;
    }

    void walkPart(Walker& walker, FolderTask& task, LocationTally& tally,
                  std::vector<FolderTask>& found) {
        DirectoryChunk& chunk = walker.chunk;
        if (!task.stream->readChunk(chunk, entriesPerTask, DirectoryStream::StatusReads::none)) {
            if (task.stream->readFailed()) {
                tally.countSkipped(*task.folder, task.stream->readError());
            }
            return;
        }
        if (chunk.entries.size() == entriesPerTask) {
            // The folder may hold more: another thread can read on while this one walks.
            offer({task.root,
                   task.folder,
                   task.stream,
                   nullptr,
                   {},
                   task.firstIndex + static_cast<std::uint32_t>(entriesPerTask)});
        } else if (task.stream->readFailed()) {
            tally.countSkipped(*task.folder, task.stream->readError());
        }
        const LocationScope& scope = *m_roots[task.root].scope;
        walker.pace.entered(scope.listIndex);
        std::int64_t entries = 0;
        for (std::size_t position = 0; position < chunk.entries.size(); ++position) {
            m_settings.throwIfStopped();
            DirectoryEntry& entry = chunk.entries[position];
            const std::string_view name = chunk.name(entry);
            if (task.folder->isNested(name)) {
                continue;
            }
            ++entries;
            walker.pace.entryWalked();
            task.stream->completeStatus(chunk, entry);
            if (entry.statusFailed) {
                tally.countSkipped(*task.folder,
                                   task.firstIndex + static_cast<std::uint32_t>(position), name,
                                   errno);
                continue;
            }
            if (entry.status.kind == EntryKind::regularFile) {
                walker.pace.fileMeasured(entry.status.allocatedBytes);
            }
            const std::uint32_t index = task.firstIndex + static_cast<std::uint32_t>(position);
            if (entry.status.kind == EntryKind::directory) {
                found.push_back(
                    {task.root,
                     std::make_shared<const WalkFolder>(childFolder(
                         *task.folder, name, index, scope.checksFiles(), scope.nestedFolders)),
                     nullptr, task.stream, std::string(name), 0});
            } else if (entry.status.kind != EntryKind::regularFile) {
                continue;
            } else if (scope.mayRecur(entry.status)) {
                tally.deferLinkedFile(task.folder, index, name, entry.status);
            } else {
                tally.countFile(*task.folder, index, name, entry.status);
            }
        }
        RootState& root = m_roots[task.root];
        if (root.entries.fetch_add(entries, std::memory_order_relaxed) + entries >
            m_settings.maxEntries) {
            root.overLimit = true;
        }
    }

    void offer(FolderTask task) {
        m_roots[task.root].pendingTasks.fetch_add(1, std::memory_order_relaxed);
        {
            std::lock_guard lock(m_mutex);
            m_tasks.push_back(std::move(task));
        }
        m_changed.notify_all();
    }

    void finish(std::size_t root, std::vector<FolderTask>& found) {
        RootState& state = m_roots[root];
        state.pendingTasks.fetch_add(static_cast<std::int64_t>(found.size()),
                                     std::memory_order_relaxed);
        {
            std::lock_guard lock(m_mutex);
            // Last found on the bottom, so the first is taken first, as a walk in order would.
            for (auto task = found.rbegin(); task != found.rend(); ++task) {
                m_tasks.push_back(std::move(*task));
            }
            --m_busy;
        }
        m_changed.notify_all();
        if (state.pendingTasks.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            complete(root);
        }
    }

    // Adds up every thread's tally of a root whose last task has finished: no thread touches
    // them again.
    void complete(std::size_t root) {
        LocationTally total(*m_roots[root].scope);
        for (const auto& walker : m_walkers) {
            if (auto& tally = walker->tallies[root]) {
                total.add(std::move(*tally));
                tally.reset();
            }
        }
        {
            std::lock_guard lock(m_mutex);
            m_roots[root].tally.emplace(std::move(total));
        }
        m_changed.notify_all();
    }

    const WalkSettings& m_settings;
    std::vector<RootState> m_roots;
    std::vector<std::unique_ptr<Walker>> m_walkers;  // the calling thread's first

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<FolderTask> m_tasks;  // a stack: the next task on top
    std::size_t m_busy = 0;           // tasks taken and not finished
    bool m_abandoned = false;
    std::exception_ptr m_failure;
    // Wakes the calling thread when a stop is requested while it waits.
    std::stop_callback<std::function<void()>> m_wakeOnStop{m_settings.stopToken, [this] {
                                                               std::lock_guard lock(m_mutex);
                                                               m_changed.notify_all();
                                                           }};
    std::vector<std::jthread> m_threads;  // last, so they are joined before anything goes
};

}  // namespace

void walkInParallel(const std::vector<const LocationScope*>& roots, std::size_t threads,
                    const WalkSettings& settings, const WalkedHandler& onWalked) {
    ParallelWalk walk(roots, threads, settings);
    walk.run(onWalked);
}

}  // namespace tallowmere
