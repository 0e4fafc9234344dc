#include "measurement/AIStorageScanner.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <thread>
#include <unordered_set>

#include "measurement/FolderJobs.h"
#include "measurement/LocationWalk.h"
#include "platform/LocationFolder.h"
#include "platform/PathRules.h"
#include "removal/AIStorageCleanup.h"
#include "text/TextRules.h"

namespace tallowmere::AIStorageScanner {

namespace {

constexpr auto progressInterval = std::chrono::milliseconds(250);

std::vector<std::string> foldersInside(const std::string& folder,
                                       const std::vector<std::filesystem::path>& folders) {
    std::vector<std::string> nested;
    for (const auto& other : folders) {
        if (PathRules::isInside(other.native(), folder)) {
            nested.push_back(other.native());
        }
    }
    return nested;
}

// Hands out progress snapshots no more often than every 0.25 s; the first always goes out.
class ProgressReporter {
public:
    ProgressReporter(const ProgressHandler& handler, Date startedAt)
        : m_handler(handler), m_startedAt(startedAt) {}

    void report(const StorageScan& soFar) {
        if (!m_handler) {
            return;
        }
        const auto now = std::chrono::steady_clock::now();
        if (m_reported && now - m_lastReport < progressInterval) {
            return;
        }
        m_reported = true;
        m_lastReport = now;
        StorageScan snapshot = soFar;
        snapshot.completedAt = m_startedAt;
        m_handler(snapshot);
    }

private:
    const ProgressHandler& m_handler;
    const Date m_startedAt;
    bool m_reported = false;
    std::chrono::steady_clock::time_point m_lastReport;
};

// A location to measure, in list order, once its folder has been looked at.
struct OpenedLocation {
    std::size_t index = 0;
    std::filesystem::path folder;
    LocationFolder::State state = LocationFolder::State::unreadable;
    EntryStatus rootStatus;
    std::shared_ptr<FolderJob> root;  // set when the folder is open
};

std::size_t threadCount(const ScanOptions& options) {
    const std::size_t threads =
        options.threads == 0 ? std::max(1u, std::thread::hardware_concurrency()) : options.threads;
    return threads == 1 ? 0 : threads;
}

// Looks at every location's folder in list order (a folder listed twice is measured once),
// opens those that can be measured and offers them to the threads, first location on top.
std::vector<OpenedLocation> openLocations(const std::filesystem::path& home,
                                          const std::vector<StorageLocation>& locations,
                                          FolderJobs& jobs, const ScanOptions& options) {
    std::vector<std::filesystem::path> folders;
    for (const auto& location : locations) {
        folders.push_back(location.url(home));
    }
    std::unordered_set<std::string> measuredFolders;
    std::vector<OpenedLocation> opened;
    for (std::size_t index = 0; index < locations.size(); ++index) {
        if (options.stopToken.stop_requested()) {
            throw ScanCancelled();
        }
        const auto& folder = folders[index];
        if (!measuredFolders.insert(folder.native()).second) {
            continue;
        }
        LocationFolder found = LocationFolder::open(folder);
        OpenedLocation location{index, folder, found.state, found.status, nullptr};
        if (found.state == LocationFolder::State::open) {
            auto shared = std::make_shared<LocationJobs>();
            shared->nestedFolders = foldersInside(folder.native(), folders);
            location.root =
                std::make_shared<FolderJob>(std::move(found.stream), folder.native(), shared);
        }
        opened.push_back(std::move(location));
    }
    for (auto location = opened.rbegin(); location != opened.rend(); ++location) {
        if (location->root) {
            jobs.offer(location->root);
        }
    }
    return opened;
}

}  // namespace

StorageScan scan(const std::filesystem::path& home, const std::vector<StorageLocation>& locations,
                 std::int64_t maxEntriesPerLocation, const ProgressHandler& onProgress,
                 const ScanOptions& options) {
    ScanContext context{currentDate(), options, {}};
    FolderJobs jobs(threadCount(options), {options.stopToken, options.pauses});
    const auto opened = openLocations(home, locations, jobs, options);
    StorageScan result;
    ProgressReporter progress(onProgress, context.now);
    for (const auto& location : opened) {
        if (options.stopToken.stop_requested()) {
            throw ScanCancelled();
        }
        if (!location.root) {
            ++(location.state == LocationFolder::State::absent ? result.absentLocations
                                                               : result.unreadableLocations);
            continue;
        }
        result.findings.push_back(measureLocation(locations[location.index], location.folder,
                                                  location.rootStatus, location.root,
                                                  maxEntriesPerLocation, context, jobs));
        progress.report(result);
    }
    std::ranges::stable_sort(result.findings, std::ranges::greater{},
                             [](const StorageFinding& finding) { return finding.allocatedBytes; });
    result.completedAt = currentDate();
    return result;
}

bool isOldLog(const std::filesystem::path& file, Date modified, const std::string& category,
              Date now, bool includeRecent) {
    return AIStorageCleanup::isOldLogFile(
        TextRules::asciiLowercased(PathRules::lastComponent(file)), modified, category, now,
        includeRecent);
}

}  // namespace tallowmere::AIStorageScanner
