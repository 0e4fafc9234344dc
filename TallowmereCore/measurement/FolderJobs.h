#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

#include "platform/DirectoryStream.h"

namespace tallowmere {

class FolderJob;

// One run of a folder's entries with their statuses, and for each entry that is a folder to
// walk, the job that lists it (null for the others).
struct ListedChunk {
    DirectoryChunk chunk;
    std::vector<std::shared_ptr<FolderJob>> children;
};

// What one location's jobs share: the other locations' folders inside it, whose entries are
// never listed as children, and whether the walk of the location stopped (then its remaining
// jobs are dropped).
struct LocationJobs {
    std::vector<std::string> nestedFolders;
    std::atomic<bool> abandoned = false;
};

// The listing of one folder, produced chunk by chunk by whichever thread gets to it first: a
// pool thread ahead of time, or the walk itself when it needs the folder now. Chunks come out
// in the order the file system lists the entries, so the walk sees exactly what a sequential
// walk would.
class FolderJob {
public:
    // A folder not yet opened: `name` inside the folder that `parent` reads.
    FolderJob(std::shared_ptr<DirectoryStream> parent, std::string name, std::string path,
              std::shared_ptr<LocationJobs> location);
    // A folder already opened (a location's own folder).
    FolderJob(DirectoryStream opened, std::string path, std::shared_ptr<LocationJobs> location);

    const std::string& path() const { return m_path; }
    // Names of entries of this folder that are other locations' folders.
    const std::vector<std::string>& nestedNames() const { return m_nestedNames; }

    // Drops the remaining jobs of this folder's location: its walk has stopped.
    void abandonLocation() { m_location->abandoned = true; }

    // State after the last chunk: the folder could not be opened, or reading it failed.
    bool openFailed() const;
    bool readFailed() const;

private:
    friend class FolderJobs;

    std::shared_ptr<DirectoryStream> m_parent;
    std::string m_name;
    const std::string m_path;
    const std::shared_ptr<LocationJobs> m_location;
    std::vector<std::string> m_nestedNames;

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::shared_ptr<DirectoryStream> m_stream;
    std::deque<ListedChunk> m_ready;
    bool m_claimed = false;
    bool m_finished = false;
    bool m_openFailed = false;
    bool m_readFailed = false;
};

struct WalkSettings {
    std::stop_token stopToken;
    bool pauses = true;
};

// Lists folders for walks: with no threads, only when a walk asks; with threads, also ahead of
// the walks, in depth-first order, holding at most a bounded number of listed entries that
// no walk has taken yet. Destroying it stops and joins its threads.
class FolderJobs {
public:
    FolderJobs(std::size_t threads, WalkSettings settings);
    FolderJobs(const FolderJobs&) = delete;
    FolderJobs& operator=(const FolderJobs&) = delete;
    ~FolderJobs();

    // Offers `job` to the threads (a location's folder; its sub-folders are offered as they
    // are found).
    void offer(const std::shared_ptr<FolderJob>& job);

    // The next chunk of `job`, listing it now if no thread has; nothing once the folder is
    // exhausted (or could not be opened). Called by the walk, one job at a time.
    std::optional<ListedChunk> next(FolderJob& job);

private:
    // Lists one more chunk of `job`, which the caller has claimed; returns the sub-folder jobs
    // it found, in listing order.
    std::vector<std::shared_ptr<FolderJob>> produce(FolderJob& job, std::int64_t& sincePause);
    void workerLoop(std::stop_token stopToken);
    bool workAllowed() const;

    const WalkSettings m_settings;
    std::mutex m_mutex;
    std::condition_variable_any m_wake;
    std::vector<std::shared_ptr<FolderJob>> m_pending;  // a stack: the next job on top
    std::atomic<std::int64_t> m_buffered = 0;           // listed entries not yet taken
    std::int64_t m_walkSincePause = 0;
    std::vector<std::jthread> m_threads;
};

}  // namespace tallowmere
