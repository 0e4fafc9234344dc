#include "measurement/AIStorageScanner.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <thread>
#include <unordered_set>

#include "measurement/LocationScope.h"
#include "measurement/LocationTally.h"
#include "measurement/MountCopies.h"
#include "measurement/ScanWalk.h"
#include "measurement/WalkSettings.h"
#include "platform/LocationFolder.h"
#include "platform/Mounts.h"
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
        m_handler(std::move(snapshot));
    }

private:
    const ProgressHandler& m_handler;
    const Date m_startedAt;
    bool m_reported = false;
    std::chrono::steady_clock::time_point m_lastReport;
};

// A location to measure, in list order, once its folder has been looked at. Its folder is
// opened again when its walk starts, so that only the folders being walked are open.
struct OpenedLocation {
    std::filesystem::path folder;
    LocationFolder::State state = LocationFolder::State::unreadable;
    std::string reason;                    // why it is unreadable
    std::unique_ptr<LocationScope> scope;  // set when the folder could be opened
};

std::size_t threadCount(const ScanOptions& options) {
    return options.threads == 0 ? std::max(1u, std::thread::hardware_concurrency())
                                : options.threads;
}

// Adds to each measured location's passed-over folders those the scan meets through another
// mount as well, so that each is measured once.
void passOverMountCopies(std::vector<OpenedLocation>& opened) {
    std::vector<const LocationScope*> scopes;
    for (const auto& location : opened) {
        if (location.scope) {
            scopes.push_back(location.scope.get());
        }
    }
    const auto copies = mountCopies(scopes, readMountTable());
    auto next = copies.begin();
    for (auto& location : opened) {
        if (location.scope) {
            auto& passedOver = location.scope->nestedFolders;
            passedOver.insert(passedOver.end(), next->begin(), next->end());
            ++next;
        }
    }
}

// Looks at every location's folder in list order and opens those that can be measured. A
// folder listed twice, or met again through another mount, is measured once.
std::vector<OpenedLocation> openLocations(const std::filesystem::path& home,
                                          const std::vector<StorageLocation>& locations, Date now,
                                          const ScanOptions& options) {
    std::vector<std::filesystem::path> folders;
    for (const auto& location : locations) {
        folders.push_back(location.url(home));
    }
    std::unordered_set<std::string> measuredFolders;
    CountedIdentities openedFolders;
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
        if (found.state == LocationFolder::State::open &&
            !openedFolders.insert(found.status.identity)) {
            continue;
        }
        OpenedLocation location{folder, found.state, std::move(found.reason), nullptr};
        if (found.state == LocationFolder::State::open) {
            location.scope = std::make_unique<LocationScope>(
                LocationScope{locations[index], folder, found.status,
                              foldersInside(folder.native(), folders), now, index});
        }
        opened.push_back(std::move(location));
    }
    passOverMountCopies(opened);
    return opened;
}

}  // namespace

StorageScan scan(const std::filesystem::path& home, const std::vector<StorageLocation>& locations,
                 std::int64_t maxEntriesPerLocation, const ProgressHandler& onProgress,
                 const ScanOptions& options) {
    const Date now = currentDate();
    const WalkSettings settings{options.stopToken, options.pauses, maxEntriesPerLocation,
                                options.meter};
    auto opened = openLocations(home, locations, now, options);
    StorageScan result;
    std::vector<const LocationScope*> measured;
    for (auto& location : opened) {
        if (location.scope) {
            measured.push_back(location.scope.get());
        } else if (location.state == LocationFolder::State::absent) {
            ++result.absentLocations;
        } else {
            ++result.unreadableLocations;
            result.unreadableFolders.push_back({location.folder, std::move(location.reason)});
        }
    }
    ProgressReporter progress(onProgress, now);
    CountedIdentities counted;
    walkLocations(measured, threadCount(options), settings, counted, [&](StorageFinding finding) {
        result.findings.push_back(std::move(finding));
        progress.report(result);
    });
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
