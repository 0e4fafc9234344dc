#include "measurement/ScanWalk.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <exception>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

#include "measurement/LocationTally.h"
#include "platform/FolderStack.h"

namespace tallowmere {

namespace {

constexpr std::size_t entriesPerRead = 1024;
constexpr std::size_t filesPerJob = 256;
constexpr std::size_t foldersPerJob = 4;
// Folders that files waiting for their statuses keep open, besides those the listing has open:
// the walk stays within a small open-file limit.
constexpr std::size_t waitingFoldersAtMost = 32;
constexpr auto spinTime = std::chrono::microseconds(50);

// A listed file whose status is still to read, unless the listing had to read it already.
struct WaitingFile {
    std::uint32_t nameOffset = 0;  // in Job::names, NUL-terminated there
    std::uint32_t nameLength = 0;
    std::uint64_t position = 0;  // as WalkFolder::position
    // In Job::listedStatuses, for a file whose kind only its status told.
    std::optional<std::uint32_t> listedStatus;
};

// Consecutive files of a job that lie in one folder.
struct Segment {
    std::shared_ptr<const DirectoryStream> stream;
    std::shared_ptr<const WalkFolder> folder;
    std::size_t end = 0;  // one past its last file in Job::files
};

// A file that may be met again, kept until the walk's earlier meetings have been taken.
struct Meeting {
    std::shared_ptr<const WalkFolder> folder;
    std::uint64_t position = 0;
    std::string name;
    EntryStatus status;
};

// Files of one location as the listing met them, whose statuses one thread reads; then, in
// turn, what they leave for walk order. The last job of a location ends it.
struct Job {
    std::uint64_t turn = 0;
    std::size_t root = 0;
    std::string names;
    std::vector<WaitingFile> files;
    std::vector<EntryStatus> listedStatuses;
    std::vector<Segment> segments;
    std::vector<Meeting> meetings;
    // Entries that are not files, which the listing met on the way to these files: counted
    // toward the walk's pace by whoever takes the job, never while the listing is held.
    std::size_t otherEntries = 0;
    bool endsLocation = false;
    bool limited = false;
};

// One thread's share: its own tally of each location, so counting takes no lock.
struct Walker {
    std::vector<std::optional<LocationTally>> tallies;
    WalkPace pace;
};

class ScanWalk {
public:
    ScanWalk(const std::vector<const LocationScope*>& locations, std::size_t threads,
             const WalkSettings& settings, CountedIdentities& counted)
        : m_locations(locations),
          m_settings(settings),
          m_counted(counted),
          m_threadCount(threads),
          m_completed(locations.size()) {
        for (std::size_t index = 0; index < threads; ++index) {
            m_walkers.push_back(std::make_unique<Walker>(
                Walker{std::vector<std::optional<LocationTally>>(locations.size()),
                       WalkPace(settings.pauses, settings.meter)}));
        }
        m_allListed = locations.empty();
        for (std::size_t index = 1; index < threads; ++index) {
            m_threads.emplace_back([this, index] { helperLoop(*m_walkers[index]); });
        }
    }

    ScanWalk(const ScanWalk&) = delete;
    ScanWalk& operator=(const ScanWalk&) = delete;

    ~ScanWalk() {
        {
            std::lock_guard lock(m_mutex);
            m_abandoned = true;
        }
        m_changed.notify_all();
    }

    // Works along with the other threads, and hands out each location's finding in order.
    void run(const FindingHandler& onFinding) {
        Walker& walker = *m_walkers.front();
        for (std::size_t next = 0; next < m_locations.size();) {
            std::unique_lock lock(m_mutex);
            sleepUntil(lock, [&] {
                return m_failure || m_settings.stopToken.stop_requested() ||
                       m_completed[next].has_value() || hasWork();
            });
            if (m_failure) {
                std::rethrow_exception(m_failure);
            }
            m_settings.throwIfStopped();
            if (const auto limited = m_completed[next]) {
                lock.unlock();
                onFinding(findingOf(next, *limited));
                ++next;
                continue;
            }
            work(walker, lock);
        }
    }

private:
    using Stack = FolderStack<std::shared_ptr<const WalkFolder>>;

    // Where the listing stands; only the thread that holds it touches this.
    struct Listing {
        std::size_t location = 0;
        bool entered = false;  // the location's folder is open on `stack`
        Stack stack{DirectoryStream::StatusReads::none};
        std::int64_t entries = 0;
        std::uint64_t nextTurn = 0;
    };

    void helperLoop(Walker& walker) {
        try {
            std::unique_lock lock(m_mutex);
            while (true) {
                sleepUntil(lock, [&] { return m_abandoned || m_failure || hasWork(); });
                if (m_abandoned || m_failure) {
                    return;
                }
                work(walker, lock);
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

    // Waits until `ready()`, spinning a little first: the listing is let go within
    // microseconds, while waking from a sleep takes tens of them.
    template <typename Predicate>
    void sleepUntil(std::unique_lock<std::mutex>& lock, Predicate&& ready) {
        if (ready()) {
            return;
        }
        const std::uint64_t seen = m_changes.load(std::memory_order_relaxed);
        lock.unlock();
        const auto spinEnd = std::chrono::steady_clock::now() + spinTime;
        while (m_changes.load(std::memory_order_relaxed) == seen &&
               std::chrono::steady_clock::now() < spinEnd) {
            std::this_thread::yield();
        }
        lock.lock();
        ++m_sleeping;
        m_changed.wait(lock, ready);
        --m_sleeping;
    }

    bool canList() const {
        return !m_listingHeld && !m_allListed &&
               m_waitingFolders + foldersPerJob <= waitingFoldersAtMost &&
               m_ready.size() < 4 * m_threadCount;
    }

    bool hasWork() const { return !m_ready.empty() || canList(); }

    // Lists while too few files wait to be read, else reads; only called when hasWork(), so
    // there is a job to read whenever the listing cannot be taken. Called and returns with
    // `lock`.
    void work(Walker& walker, std::unique_lock<std::mutex>& lock) {
        if (canList() && m_ready.size() < m_threadCount) {
            list(walker, lock);
        } else {
            read(walker, lock);
        }
        m_changes.fetch_add(1, std::memory_order_relaxed);
        // Waking a thread costs a system call; most of the time none sleeps.
        if (m_sleeping > 0) {
            m_changed.notify_all();
        }
    }

    void list(Walker& walker, std::unique_lock<std::mutex>& lock) {
        m_listingHeld = true;
        lock.unlock();
        std::unique_ptr<Job> job = listJob(walker);
        if (job->files.empty()) {
            keepPace(walker, job->otherEntries);
        }
        lock.lock();
        m_listingHeld = false;
        m_allListed = m_listing.location == m_locations.size();
        if (job->files.empty()) {
            m_read.emplace(job->turn, std::move(job));
            takeTurns(walker);
            return;
        }
        m_waitingFolders += job->segments.size();
        m_ready.push_back(std::move(job));
    }

    void read(Walker& walker, std::unique_lock<std::mutex>& lock) {
        std::unique_ptr<Job> job = std::move(m_ready.front());
        m_ready.pop_front();
        lock.unlock();
        const std::size_t folders = job->segments.size();
        readStatuses(walker, *job);
        lock.lock();
        m_waitingFolders -= folders;
        m_read.emplace(job->turn, std::move(job));
        takeTurns(walker);
    }

    // Lists on until a job is full or its location ends.
    std::unique_ptr<Job> listJob(Walker& walker) {
        auto job = std::make_unique<Job>();
        job->files.reserve(filesPerJob);
        // Room for names of typical length, so that most jobs fill it without moving it.
        job->names.reserve(filesPerJob * 32);
        job->turn = m_listing.nextTurn++;
        job->root = m_listing.location;
        if (!m_listing.entered && !enter(walker, *job)) {
            endLocation(*job, false);
            return job;
        }
        Stack& stack = m_listing.stack;
        while (job->files.size() < filesPerJob && job->segments.size() < foldersPerJob) {
            switch (stack.advance(entriesPerRead)) {
                case Stack::Next::entry:
                    break;
                case Stack::Next::failed:
                    tallyOf(walker, job->root)
                        .countSkipped(*stack.top().place, stack.top().readError);
                    [[fallthrough]];
                case Stack::Next::finished:
                    if (!leave(walker, *job)) {
                        endLocation(*job, false);
                        return job;
                    }
                    continue;
            }
            Stack::Level& level = stack.top();
            if (!take(walker, level, level.next++, *job)) {
                endLocation(*job, true);
                return job;
            }
        }
        return job;
    }

    bool enter(Walker& walker, Job& job) {
        const LocationScope& scope = *m_locations[job.root];
        walker.pace.entered(scope.listIndex);
        auto root = std::make_shared<const WalkFolder>(scope.rootFolder());
        OpenedFolder opened = openForWalk(scope);
        if (!opened.stream.valid()) {
            tallyOf(walker, job.root).countSkipped(*root, std::move(opened.reason));
            return false;
        }
        m_listing.stack.push(std::move(root), std::move(opened.stream));
        m_listing.entered = true;
        m_listing.entries = 0;
        return true;
    }

    // Leaves the innermost folder; false when it was the location's own.
    bool leave(Walker& walker, const Job& job) {
        Stack& stack = m_listing.stack;
        if (!stack.pop()) {
            // The folder it came back to was moved away meanwhile: the rest of it is unread.
            tallyOf(walker, job.root).countSkipped(*stack.top().place, ENOENT);
        }
        return !stack.empty();
    }

    void endLocation(Job& job, bool limited) {
        job.endsLocation = true;
        job.limited = limited;
        m_listing.stack = Stack(DirectoryStream::StatusReads::none);
        m_listing.entered = false;
        ++m_listing.location;
    }

    // Takes up the entry at `position` of the innermost folder; false when it passes the limit.
    bool take(Walker& walker, Stack::Level& level, std::size_t position, Job& job) {
        m_settings.throwIfStopped();
        const DirectoryEntry& entry = level.chunk.entries[position];
        const std::string_view name = level.chunk.name(entry);
        const WalkFolder& folder = *level.place;
        if (folder.isNested(name)) {
            return true;
        }
        if (++m_listing.entries > m_settings.maxEntries) {
            return false;
        }
        // One thread lists the whole location depth first, so entries are counted in walk order.
        const auto walked = static_cast<std::uint64_t>(m_listing.entries);
        EntryKind kind = entry.kind;
        if (kind == EntryKind::unknown) {
            // Only a status tells what it is.
            EntryStatus status;
            if (!level.stream->readStatus(level.chunk, entry, status)) {
                ++job.otherEntries;
                tallyOf(walker, job.root).countSkipped(folder, walked, name, errno);
                return true;
            }
            if (status.kind == EntryKind::regularFile) {
                addFile(level, entry, walked, &status, job);
                return true;
            }
            kind = status.kind;
        }
        if (kind == EntryKind::regularFile) {
            addFile(level, entry, walked, nullptr, job);
            return true;
        }
        ++job.otherEntries;
        if (kind == EntryKind::directory) {
            descend(walker, level, entry, walked, job);
        }
        return true;
    }

    // `listedStatus` is the file's status when the listing had to read it.
    void addFile(const Stack::Level& level, const DirectoryEntry& entry, std::uint64_t position,
                 const EntryStatus* listedStatus, Job& job) {
        if (job.segments.empty() || job.segments.back().folder != level.place) {
            job.segments.push_back({level.stream, level.place, job.files.size()});
        }
        const std::string_view name = level.chunk.name(entry);
        std::optional<std::uint32_t> listed;
        if (listedStatus) {
            listed = static_cast<std::uint32_t>(job.listedStatuses.size());
            job.listedStatuses.push_back(*listedStatus);
        }
        job.files.push_back({static_cast<std::uint32_t>(job.names.size()),
                             static_cast<std::uint32_t>(name.size()), position, listed});
        job.names.append(name);
        job.names.push_back('\0');
        job.segments.back().end = job.files.size();
    }

    void descend(Walker& walker, const Stack::Level& parent, const DirectoryEntry& entry,
                 std::uint64_t position, const Job& job) {
        const std::string_view name = parent.chunk.name(entry);
        DirectoryStream child =
            DirectoryStream::openChild(parent.stream->fd(), parent.chunk.cName(entry));
        if (!child.valid()) {
            tallyOf(walker, job.root).countSkipped(*parent.place, position, name, errno);
            return;
        }
        const LocationScope& scope = *m_locations[job.root];
        auto folder = std::make_shared<const WalkFolder>(
            childFolder(parent.place, name, position, scope.checksFiles(), scope.nestedFolders));
        // Invalidates `parent` and `entry`.
        m_listing.stack.push(std::move(folder), std::move(child));
    }

    // Reads the statuses of a job's files and counts them, but for files that may be met
    // again, which wait for their turn. Lets go of the job's folders.
    void readStatuses(Walker& walker, Job& job) {
        const LocationScope& scope = *m_locations[job.root];
        LocationTally& tally = tallyOf(walker, job.root);
        keepPace(walker, job.otherEntries);
        std::size_t next = 0;
        for (const Segment& segment : job.segments) {
            for (; next < segment.end; ++next) {
                m_settings.throwIfStopped();
                walker.pace.entryWalked();
                const WaitingFile& file = job.files[next];
                const char* cName = job.names.data() + file.nameOffset;
                const std::string_view name(cName, file.nameLength);
                EntryStatus status;
                if (file.listedStatus) {
                    status = job.listedStatuses[*file.listedStatus];
                } else if (!readEntryStatus(segment.stream->fd(), cName, status)) {
                    tally.countSkipped(*segment.folder, file.position, name, errno);
                    continue;
                }
                if (status.kind != EntryKind::regularFile) {
                    continue;  // replaced since it was listed
                }
                walker.pace.fileMeasured(status.allocatedBytes);
                if (scope.mayRecur(status)) {
                    job.meetings.push_back(
                        {segment.folder, file.position, std::string(name), status});
                } else {
                    tally.countFile(*segment.folder, file.position, name, status);
                }
            }
        }
        job.segments.clear();
        job.files = {};
        job.names = {};
        job.listedStatuses = {};
    }

    // Takes the read jobs whose turn has come, in walk order: each file that may be met again
    // counts only if no earlier meeting counted it. Called with the lock held.
    void takeTurns(Walker& walker) {
        for (auto next = m_read.find(m_nextTurn); next != m_read.end();
             next = m_read.find(++m_nextTurn)) {
            Job& job = *next->second;
            const LocationScope& scope = *m_locations[job.root];
            for (const Meeting& meeting : job.meetings) {
                const FileIdentity& identity = meeting.status.identity;
                if (scope.hasTwoNamesOnly(meeting.status) ? m_counted.insertOneOfTwoNames(identity)
                                                          : m_counted.insert(identity)) {
                    tallyOf(walker, job.root)
                        .countFile(*meeting.folder, meeting.position, meeting.name, meeting.status);
                }
            }
            if (job.endsLocation) {
                m_completed[job.root] = job.limited;
            }
            m_read.erase(next);
        }
    }

    static void keepPace(Walker& walker, std::size_t entries) {
        for (std::size_t counted = 0; counted < entries; ++counted) {
            walker.pace.entryWalked();
        }
    }

    LocationTally& tallyOf(Walker& walker, std::size_t root) {
        auto& tally = walker.tallies[root];
        if (!tally) {
            tally.emplace(*m_locations[root]);
        }
        return *tally;
    }

    // Adds up every thread's tally of a location whose last job has had its turn: no thread
    // touches them again.
    StorageFinding findingOf(std::size_t root, bool limited) {
        LocationTally total(*m_locations[root]);
        for (const auto& walker : m_walkers) {
            if (auto& tally = walker->tallies[root]) {
                total.add(std::move(*tally));
                tally.reset();
            }
        }
        return std::move(total).finding(limited);
    }

    const std::vector<const LocationScope*>& m_locations;
    const WalkSettings& m_settings;
    CountedIdentities& m_counted;  // under m_mutex
    const std::size_t m_threadCount;
    std::vector<std::unique_ptr<Walker>> m_walkers;  // the calling thread's first
    Listing m_listing;

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::unique_ptr<Job>> m_ready;              // listed, first listed first
    std::map<std::uint64_t, std::unique_ptr<Job>> m_read;  // read, waiting for their turn
    std::uint64_t m_nextTurn = 0;
    std::size_t m_waitingFolders = 0;          // of the jobs listed and not yet read
    std::size_t m_sleeping = 0;                // threads waiting for m_changed
    std::atomic<std::uint64_t> m_changes = 0;  // work done, for threads that spin
    bool m_listingHeld = false;
    bool m_allListed = false;
    // Per location, once its last job has had its turn: whether it passed the limit.
    std::vector<std::optional<bool>> m_completed;
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

void walkLocations(const std::vector<const LocationScope*>& locations, std::size_t threads,
                   const WalkSettings& settings, CountedIdentities& counted,
                   const FindingHandler& onFinding) {
    ScanWalk walk(locations, threads, settings, counted);
    walk.run(onFinding);
}

}  // namespace tallowmere
