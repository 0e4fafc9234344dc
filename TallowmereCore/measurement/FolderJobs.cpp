#include "measurement/FolderJobs.h"

#include <algorithm>
#include <chrono>

namespace tallowmere {

namespace {

constexpr std::size_t chunkEntries = 1024;
// Listed entries that may wait for the walk: enough to keep the threads busy, few enough to
// keep memory flat (about 100 bytes an entry).
constexpr std::int64_t maxBufferedEntries = 32768;
constexpr std::int64_t entriesBetweenPauses = 256;
constexpr auto pauseLength = std::chrono::milliseconds(2);

std::string joined(const std::string& folder, std::string_view name) {
    std::string path = folder;
    if (!path.ends_with('/')) {
        path += '/';
    }
    path += name;
    return path;
}

// The folder part of a path ("/" for a path directly below the root).
std::string_view parentOf(std::string_view path) {
    const auto slash = path.rfind('/');
    return slash == 0 ? std::string_view("/") : path.substr(0, slash);
}

std::vector<std::string> nestedNamesIn(const std::string& folder,
                                       const std::vector<std::string>& nested) {
    std::vector<std::string> names;
    for (const auto& path : nested) {
        if (parentOf(path) == folder) {
            names.push_back(path.substr(path.rfind('/') + 1));
        }
    }
    return names;
}

}  // namespace

FolderJob::FolderJob(std::shared_ptr<DirectoryStream> parent, std::string name, std::string path,
                     std::shared_ptr<LocationJobs> location)
    : m_parent(std::move(parent)),
      m_name(std::move(name)),
      m_path(std::move(path)),
      m_location(std::move(location)),
      m_nestedNames(nestedNamesIn(m_path, m_location->nestedFolders)) {}

FolderJob::FolderJob(DirectoryStream opened, std::string path,
                     std::shared_ptr<LocationJobs> location)
    : m_path(std::move(path)),
      m_location(std::move(location)),
      m_nestedNames(nestedNamesIn(m_path, m_location->nestedFolders)),
      m_stream(std::make_shared<DirectoryStream>(std::move(opened))) {}

bool FolderJob::openFailed() const {
    std::lock_guard lock(m_mutex);
    return m_openFailed;
}

bool FolderJob::readFailed() const {
    std::lock_guard lock(m_mutex);
    return m_readFailed;
}

FolderJobs::FolderJobs(std::size_t threads, WalkSettings settings)
    : m_settings(std::move(settings)) {
    for (std::size_t index = 0; index < threads; ++index) {
        m_threads.emplace_back([this](std::stop_token stopToken) { workerLoop(stopToken); });
    }
}

FolderJobs::~FolderJobs() {
    for (auto& thread : m_threads) {
        thread.request_stop();
    }
    m_wake.notify_all();
}

void FolderJobs::offer(const std::shared_ptr<FolderJob>& job) {
    if (m_threads.empty()) {
        return;
    }
    {
        std::lock_guard lock(m_mutex);
        m_pending.push_back(job);
    }
    m_wake.notify_one();
}

std::optional<ListedChunk> FolderJobs::next(FolderJob& job) {
    std::unique_lock lock(job.m_mutex);
    while (true) {
        if (!job.m_ready.empty()) {
            ListedChunk chunk = std::move(job.m_ready.front());
            job.m_ready.pop_front();
            m_buffered -= static_cast<std::int64_t>(chunk.chunk.entries.size());
            lock.unlock();
            m_wake.notify_all();
            return chunk;
        }
        if (job.m_finished) {
            return std::nullopt;
        }
        if (job.m_claimed) {
            job.m_changed.wait(lock);
            continue;
        }
        job.m_claimed = true;
        lock.unlock();
        const auto children = produce(job, m_walkSincePause);
        {
            std::lock_guard pending(m_mutex);
            for (auto child = children.rbegin(); child != children.rend() && !m_threads.empty();
                 ++child) {
                m_pending.push_back(*child);
            }
        }
        m_wake.notify_all();
        lock.lock();
        job.m_claimed = false;
    }
}

std::vector<std::shared_ptr<FolderJob>> FolderJobs::produce(FolderJob& job,
                                                            std::int64_t& sincePause) {
    if (!job.m_stream) {
        DirectoryStream opened = DirectoryStream::openChild(job.m_parent->fd(), job.m_name.c_str());
        job.m_parent.reset();
        if (!opened.valid()) {
            std::lock_guard lock(job.m_mutex);
            job.m_openFailed = job.m_finished = true;
            job.m_changed.notify_all();
            return {};
        }
        job.m_stream = std::make_shared<DirectoryStream>(std::move(opened));
    }
    ListedChunk listed;
    const bool more = job.m_stream->readChunk(listed.chunk, chunkEntries,
                                              DirectoryStream::StatusReads::filesAndUnknown,
                                              m_settings.stopToken);
    std::vector<std::shared_ptr<FolderJob>> children;
    listed.children.resize(listed.chunk.entries.size());
    for (std::size_t index = 0; index < listed.chunk.entries.size(); ++index) {
        const auto& entry = listed.chunk.entries[index];
        const auto name = listed.chunk.name(entry);
        if (entry.statusFailed || entry.status.kind != EntryKind::directory ||
            std::ranges::find(job.m_nestedNames, name) != job.m_nestedNames.end()) {
            continue;
        }
        listed.children[index] = std::make_shared<FolderJob>(
            job.m_stream, std::string(name), joined(job.m_path, name), job.m_location);
        children.push_back(listed.children[index]);
    }
    sincePause += static_cast<std::int64_t>(listed.chunk.entries.size());
    for (; sincePause >= entriesBetweenPauses; sincePause -= entriesBetweenPauses) {
        if (m_settings.pauses) {
            std::this_thread::sleep_for(pauseLength);
        }
    }
    std::lock_guard lock(job.m_mutex);
    if (more) {
        m_buffered += static_cast<std::int64_t>(listed.chunk.entries.size());
        job.m_ready.push_back(std::move(listed));
    } else {
        job.m_finished = true;
        job.m_readFailed = job.m_stream->readFailed();
        job.m_stream.reset();  // the sub-folders' jobs keep it open while they need it
    }
    job.m_changed.notify_all();
    return children;
}

bool FolderJobs::workAllowed() const {
    return m_buffered < maxBufferedEntries;
}

void FolderJobs::workerLoop(std::stop_token stopToken) {
    std::int64_t sincePause = 0;
    while (!stopToken.stop_requested() && !m_settings.stopToken.stop_requested()) {
        std::shared_ptr<FolderJob> job;
        {
            std::unique_lock lock(m_mutex);
            if (!m_wake.wait(lock, stopToken,
                             [this] { return !m_pending.empty() && workAllowed(); })) {
                return;
            }
            job = std::move(m_pending.back());
            m_pending.pop_back();
        }
        {
            std::lock_guard lock(job->m_mutex);
            if (job->m_claimed || job->m_finished || job->m_location->abandoned) {
                continue;
            }
            job->m_claimed = true;
        }
        const auto children = produce(*job, sincePause);
        bool finished = false;
        {
            std::lock_guard lock(job->m_mutex);
            job->m_claimed = false;
            finished = job->m_finished;
        }
        job->m_changed.notify_all();
        {
            std::lock_guard lock(m_mutex);
            if (!finished) {
                m_pending.push_back(job);
            }
            m_pending.insert(m_pending.end(), children.rbegin(), children.rend());
        }
        m_wake.notify_all();
    }
}

}  // namespace tallowmere
