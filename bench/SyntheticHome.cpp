#include "SyntheticHome.h"

#include <algorithm>
#include <chrono>
#include <numeric>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "HomeWriter.h"
#include "SeededRandom.h"
#include "SyntheticShapes.h"
#include "catalog/ToolCatalog.h"

namespace tallowmere::bench {

namespace {

constexpr int deepestFolder = 6;
// A location with this many files keeps about half of them in one folder, as caches do.
constexpr std::int64_t wideFolderMinimumFiles = 500;
constexpr std::uint64_t sixtyDaysInNanoseconds = 60ULL * 86400 * 1000000000;
constexpr std::uint64_t nanosecondsPerSecond = 1000000000;

struct Folder {
    std::string path;
    int depth = 0;
    std::size_t parent = 0;
};

struct LocationPlan {
    std::string root;
    LocationKind kind = LocationKind::general;
    std::int64_t files = 0;
    std::vector<Folder> folders;   // the location's own folder first
    std::uint64_t nextNumber = 0;  // every name in a location carries a fresh one, so none repeat
};

struct WrittenFile {
    std::string path;
    std::size_t location = 0;
};

// True for a folder that some location's walk meets as an entry: inside a location and not
// one itself, like "User" between an editor's folder and its "User/History".
bool isWalkedFolder(const std::string& path) {
    const auto& locations = AIStorageScanner::locations();
    const auto names = [&](const StorageLocation& location) {
        return location.relativePath == path;
    };
    const auto holds = [&](const StorageLocation& location) {
        return path.starts_with(location.relativePath + "/");
    };
    return std::ranges::none_of(locations, names) && std::ranges::any_of(locations, holds);
}

// "../" once per component of `folder`, which leads from inside it back to the home.
std::string upToHome(const std::string& folder) {
    const auto components = std::ranges::count(folder, '/') + 1;
    std::string climb;
    for (std::ptrdiff_t step = 0; step < components; ++step) {
        climb += "../";
    }
    return climb;
}

std::uint64_t currentNanoseconds() {
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::nanoseconds>(sinceEpoch).count());
}

class SyntheticHomeBuilder {
public:
    SyntheticHomeBuilder(const std::filesystem::path& root, std::uint64_t seed)
        : m_writer(root), m_random(seed), m_now(currentNanoseconds()) {}

    SyntheticHomeSummary build(std::int64_t files) {
        planLocations(files);
        makeLocationFolders();
        for (std::size_t index = 0; index < m_plans.size(); ++index) {
            fillLocation(index);
        }
        addHardLinks(files / 100);
        addSymbolicLinks(files / 200);
        return m_summary;
    }

private:
    // Keeps about four locations in five and gives each a share of the files by its weight.
    void planLocations(std::int64_t files) {
        std::vector<std::uint64_t> weights;
        for (const auto& location : AIStorageScanner::locations()) {
            if (location.relativePath.starts_with('/') || !m_random.chance(800)) {
                continue;
            }
            LocationPlan& plan = m_plans.emplace_back();
            plan.root = location.relativePath;
            plan.kind = kindOf(location.category);
            weights.push_back(categoryWeight(location.category) << m_random.below(5));
        }
        shareOut(files, weights);
    }

    // Integer shares from running totals, so they add up to `files` exactly on any system.
    void shareOut(std::int64_t files, const std::vector<std::uint64_t>& weights) {
        const auto total = static_cast<std::int64_t>(std::max<std::uint64_t>(
            1, std::accumulate(weights.begin(), weights.end(), std::uint64_t{0})));
        std::int64_t runningWeight = 0;
        std::int64_t given = 0;
        for (std::size_t index = 0; index < m_plans.size(); ++index) {
            runningWeight += static_cast<std::int64_t>(weights[index]);
            const std::int64_t due = files * runningWeight / total;
            m_plans[index].files = due - given;
            given = due;
        }
    }

    // Makes each location's folder and those above it; the ones inside another location are
    // entries of its walk, so they are counted.
    void makeLocationFolders() {
        std::set<std::string> made;
        for (const auto& plan : m_plans) {
            for (std::size_t end = plan.root.find('/');; end = plan.root.find('/', end + 1)) {
                const std::string folder = plan.root.substr(0, end);
                if (made.insert(folder).second) {
                    m_writer.folder(folder);
                    m_summary.folders += isWalkedFolder(folder) ? 1 : 0;
                }
                if (end == std::string::npos) {
                    break;
                }
            }
        }
    }

    void fillLocation(std::size_t index) {
        LocationPlan& plan = m_plans[index];
        plan.folders.push_back({plan.root, 0, 0});
        const auto folderCount = static_cast<std::size_t>(
            std::max<std::int64_t>(1, plan.files / m_random.pick(folderFills()).files));
        while (plan.folders.size() < folderCount) {
            addFolder(plan);
        }
        const bool hasWideFolder = plan.files >= wideFolderMinimumFiles;
        const std::size_t wideFolder = m_random.below(plan.folders.size());
        for (std::int64_t file = 0; file < plan.files; ++file) {
            const bool wide = hasWideFolder && m_random.chance(500);
            const std::size_t folder = wide ? wideFolder : m_random.below(plan.folders.size());
            writeFile(index, plan.folders[folder].path);
        }
    }

    // Hangs a new folder below a random one; below the deepest level it goes to an ancestor.
    void addFolder(LocationPlan& plan) {
        std::size_t parent = m_random.below(plan.folders.size());
        while (plan.folders[parent].depth == deepestFolder) {
            parent = plan.folders[parent].parent;
        }
        const std::string name = std::string(m_random.pick(folderWords()).word) + "-" +
                                 std::to_string(plan.nextNumber++);
        Folder folder{plan.folders[parent].path + "/" + name, plan.folders[parent].depth + 1,
                      parent};
        m_writer.folder(folder.path);
        ++m_summary.folders;
        plan.folders.push_back(std::move(folder));
    }

    void writeFile(std::size_t location, const std::string& folder) {
        LocationPlan& plan = m_plans[location];
        const SizeBand& band = m_random.pick(sizesFor(plan.kind));
        const auto bytes =
            band.smallest + static_cast<std::int64_t>(m_random.below(
                                static_cast<std::uint64_t>(band.largest - band.smallest) + 1));
        std::string path = folder + "/" + fileName(plan);
        m_writer.file(path, bytes, recentTime());
        m_written.push_back({std::move(path), location});
        ++m_summary.files;
        m_summary.bytes += bytes;
    }

    std::string fileName(LocationPlan& plan) {
        const NamePattern& pattern = m_random.pick(namesFor(plan.kind));
        return std::string(pattern.prefix) + std::to_string(plan.nextNumber++) +
               std::string(pattern.suffix);
    }

    // A moment in the 60 days before the run, so old logs and caches exist as well as new ones.
    timespec recentTime() {
        const std::uint64_t time = m_now - m_random.below(sixtyDaysInNanoseconds);
        return {static_cast<time_t>(time / nanosecondsPerSecond),
                static_cast<long>(time % nanosecondsPerSecond)};
    }

    // Half stay in the file's own location, half go to another, so both kinds of sharing occur.
    void addHardLinks(std::int64_t count) {
        for (std::int64_t link = 0; link < count && !m_written.empty(); ++link) {
            const WrittenFile& existing = m_written[m_random.below(m_written.size())];
            LocationPlan& plan = m_random.chance(500) ? m_plans[existing.location]
                                                      : m_plans[m_random.below(m_plans.size())];
            const Folder& folder = plan.folders[m_random.below(plan.folders.size())];
            m_writer.hardLink(existing.path, folder.path + "/" + fileName(plan));
            ++m_summary.hardLinks;
        }
    }

    // Relative links to files, to location folders (loops for a walk that follows links) and
    // to nothing.
    void addSymbolicLinks(std::int64_t count) {
        for (std::int64_t link = 0; link < count && !m_written.empty(); ++link) {
            LocationPlan& plan = m_plans[m_random.below(m_plans.size())];
            const Folder& folder = plan.folders[m_random.below(plan.folders.size())];
            const std::string number = std::to_string(plan.nextNumber++);
            const std::uint64_t kind = m_random.below(100);
            const std::string target =
                kind < 60 ? upToHome(folder.path) + m_written[m_random.below(m_written.size())].path
                : kind < 85 ? upToHome(folder.path) + m_plans[m_random.below(m_plans.size())].root
                            : "missing-" + number;
            m_writer.symbolicLink(target, folder.path + "/link-" + number);
            ++m_summary.symbolicLinks;
        }
    }

    HomeWriter m_writer;
    SeededRandom m_random;
    const std::uint64_t m_now;
    std::vector<LocationPlan> m_plans;
    std::vector<WrittenFile> m_written;
    SyntheticHomeSummary m_summary;
};

void requireEmptyFolder(const std::filesystem::path& root) {
    if (!std::filesystem::exists(root)) {
        std::filesystem::create_directories(root);
        return;
    }
    if (!std::filesystem::is_directory(root) || !std::filesystem::is_empty(root)) {
        throw std::runtime_error("'" + root.native() + "' is not an empty folder");
    }
}

}  // namespace

SyntheticHomeSummary makeSyntheticHome(const std::filesystem::path& root, std::int64_t files,
                                       std::uint64_t seed) {
    requireEmptyFolder(root);
    return SyntheticHomeBuilder(root, seed).build(files);
}

}  // namespace tallowmere::bench
