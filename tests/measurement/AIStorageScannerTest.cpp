#include "measurement/AIStorageScanner.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <stop_token>
#include <system_error>

#include "TemporaryTree.h"

namespace tallowmere {
namespace {

using testing::allocatedBytesOf;
using ::testing::ElementsAre;
using testing::TemporaryTree;

constexpr Date day = 86400;

ScanOptions withoutPauses(std::stop_token stopToken = {}) {
    ScanOptions options;
    options.stopToken = stopToken;
    options.pauses = false;
    return options;
}

StorageLocation location(const std::string& relativePath,
                         const std::string& category = "Agent data",
                         const std::string& owner = "Tool") {
    return {owner, category, relativePath, "detail"};
}

StorageScan scanOf(const TemporaryTree& tree, const std::vector<StorageLocation>& locations,
                   std::int64_t maxEntries = 100000) {
    return AIStorageScanner::scan(tree.root(), locations, maxEntries, {}, withoutPauses());
}

const StorageFinding& findingFor(const StorageScan& scan, const std::string& relativePath) {
    const auto found = std::ranges::find_if(scan.findings, [&](const StorageFinding& finding) {
        return finding.location.relativePath == relativePath;
    });
    if (found == scan.findings.end()) {
        throw std::runtime_error("no finding for " + relativePath);
    }
    return *found;
}

std::vector<std::string> namesOf(const std::vector<FileEntry>& entries) {
    std::vector<std::string> names;
    for (const auto& entry : entries) {
        names.push_back(entry.name().native());
    }
    return names;
}

std::vector<std::string> namesOf(const std::vector<StorageCleanupFile>& files) {
    std::vector<std::string> names;
    for (const auto& file : files) {
        names.push_back(file.entry.name().native());
    }
    return names;
}

TEST(AIStorageScanner, SumsFilesAndSortsFindingsLargestFirst) {
    TemporaryTree tree;
    tree.file(".small/a", 10);
    const auto big = tree.file(".big/sub/deeper/b", 70000);
    const auto other = tree.file(".big/c", 5000);
    tree.folder(".empty");

    const auto scan = scanOf(tree, {location(".small"), location(".big"), location(".empty")});

    ASSERT_EQ(scan.findings.size(), 3u);
    EXPECT_EQ(scan.findings[0].location.relativePath, ".big");
    const auto& finding = scan.findings[0];
    EXPECT_EQ(finding.url, tree.root() / ".big");
    EXPECT_EQ(finding.fileCount, 2);
    EXPECT_EQ(finding.logicalBytes, 75000);
    EXPECT_EQ(finding.allocatedBytes, allocatedBytesOf(big) + allocatedBytesOf(other));
    EXPECT_THAT(namesOf(finding.largestFiles), ElementsAre("b", "c"));
    EXPECT_EQ(finding.largestFiles[0].url, big);
    struct stat status;
    ASSERT_EQ(::stat(big.c_str(), &status), 0);
    EXPECT_EQ(finding.largestFiles[0].fileIdentity, (FileIdentity{status.st_dev, status.st_ino}));
    EXPECT_EQ(findingFor(scan, ".empty").fileCount, 0);
    EXPECT_EQ(scan.allocatedBytes(), finding.allocatedBytes + scan.findings[1].allocatedBytes);
    EXPECT_FALSE(scan.incomplete());
}

TEST(AIStorageScanner, EqualSizesKeepLocationOrder) {
    TemporaryTree tree;
    for (const char* name : {".one", ".two", ".three"}) {
        tree.folder(name);
    }
    const auto scan = scanOf(tree, {location(".one"), location(".two"), location(".three")});
    std::vector<std::string> order;
    for (const auto& finding : scan.findings) {
        order.push_back(finding.location.relativePath);
    }
    EXPECT_THAT(order, ElementsAre(".one", ".two", ".three"));
}

TEST(AIStorageScanner, NestedLocationsAreMeasuredOnlyOnTheirOwn) {
    TemporaryTree tree;
    tree.file(".cache/pip/wheel", 100);
    tree.file(".cache/huggingface/hub/model", 1000);
    tree.file(".cache2/x", 7);

    for (const bool innerFirst : {false, true}) {
        std::vector<StorageLocation> locations = {
            location(".cache"), location(".cache/huggingface"), location(".cache2")};
        if (innerFirst) {
            std::swap(locations[0], locations[1]);
        }
        const auto scan = scanOf(tree, locations);
        const auto& outer = findingFor(scan, ".cache");
        EXPECT_EQ(outer.fileCount, 1) << innerFirst;
        EXPECT_EQ(outer.logicalBytes, 100) << innerFirst;
        EXPECT_EQ(findingFor(scan, ".cache/huggingface").fileCount, 1) << innerFirst;
        EXPECT_EQ(findingFor(scan, ".cache2").fileCount, 1) << innerFirst;
    }

    // The inner folder is left out of the outer one's entries even when it does not exist
    // as a location of its own, and even its own entry is not counted against the limit.
    const auto limited = scanOf(tree, {location(".cache"), location(".cache/huggingface")}, 2);
    EXPECT_FALSE(findingFor(limited, ".cache").limited);
    TemporaryTree missing;
    missing.file(".cache/a", 1);
    const auto scan = scanOf(missing, {location(".cache"), location(".cache/huggingface")});
    EXPECT_EQ(scan.absentLocations, 1);
    EXPECT_EQ(findingFor(scan, ".cache").fileCount, 1);
}

TEST(AIStorageScanner, RepeatedAbsentAndUnreadableLocations) {
    TemporaryTree tree;
    tree.file(".tool/a", 5);
    tree.file(".plain-file", 5);
    tree.folder("real/inside");
    tree.symlink("real", "linked");
    tree.symlink("real", ".link-to-folder");
    tree.symlink("nowhere", ".dangling");

    auto custom = location((tree.root() / "x/../.tool/").native(), "Custom folder");
    const auto scan = scanOf(
        tree, {location(".tool"), custom, location(".missing"), location(".plain-file/below"),
               location(".plain-file"), location(".link-to-folder"), location("linked/inside"),
               location(".dangling"), location(".missing"), location(".link-to-folder")});

    ASSERT_EQ(scan.findings.size(), 1u);
    EXPECT_EQ(scan.findings[0].location.relativePath, ".tool");
    EXPECT_EQ(scan.absentLocations, 2);  // ".missing" once, and a path below a file
    EXPECT_EQ(scan.unreadableLocations, 4);
    const std::string notFollowed =
        ", and links are not followed; track that folder to measure it.";
    EXPECT_THAT(
        scan.unreadableFolders,
        ElementsAre(
            UnreadableFolder{tree / ".plain-file", "It is not a folder."},
            UnreadableFolder{tree / ".link-to-folder",
                             "It is a symbolic link to " + (tree / "real").native() + notFollowed},
            UnreadableFolder{tree / "linked/inside",
                             "It lies behind a symbolic link (it is really " +
                                 (tree / "real/inside").native() + ")" + notFollowed},
            UnreadableFolder{tree / ".dangling",
                             "It is a symbolic link to nowhere, which does not exist."}));
    EXPECT_TRUE(scan.incomplete());

    const auto allAbsent = scanOf(tree, {location(".nothing"), location(".none")});
    EXPECT_TRUE(allAbsent.findings.empty());
    EXPECT_EQ(allAbsent.absentLocations, 2);
    EXPECT_FALSE(allAbsent.incomplete());
}

TEST(AIStorageScanner, CountsHardLinkedFilesOnceAndNeverFollowsLinks) {
    TemporaryTree tree;
    tree.file(".a/original", 3000);
    tree.hardLink(".a/original", ".a/same-folder-link");
    tree.hardLink(".a/original", ".b/other-location-link");
    tree.file(".b/own", 10);
    tree.folder("outside/deep");
    tree.file("outside/deep/big", 90000);
    tree.symlink("../outside", ".b/folder-link");
    tree.symlink("../outside/deep/big", ".b/file-link");

    const auto scan = scanOf(tree, {location(".a"), location(".b")});
    const auto& first = findingFor(scan, ".a");
    EXPECT_EQ(first.fileCount, 1);
    EXPECT_EQ(first.logicalBytes, 3000);
    EXPECT_THAT(namesOf(first.largestFiles), ElementsAre("original"));
    const auto& second = findingFor(scan, ".b");
    EXPECT_EQ(second.fileCount, 1);
    EXPECT_EQ(second.logicalBytes, 10);
    EXPECT_EQ(second.skippedCount, 0);
}

// Mounts `source` at `target` too; throws when it cannot.
void bindMount(const std::filesystem::path& source, const std::filesystem::path& target) {
    if (::mount(source.c_str(), target.c_str(), nullptr, MS_BIND, nullptr) != 0) {
        throw std::system_error(errno, std::generic_category(), "mount --bind " + target.native());
    }
}

// "path bytes files" for each finding, in list order.
std::string sizesOf(const StorageScan& scan) {
    std::string text;
    for (const auto& finding : scan.findings) {
        text += finding.location.relativePath + " " + std::to_string(finding.logicalBytes) + " " +
                std::to_string(finding.fileCount) + "\n";
    }
    return text;
}

TEST(AIStorageScanner, MeasuresAFolderMetThroughAnotherMountOnce) {
    TemporaryTree tree;
    tree.file(".same/source/big", 10000);
    tree.file(".same/own", 10);
    tree.folder(".same/the copy");  // the mount table escapes the space
    tree.file(".models/m/weights", 20000);
    tree.file(".other/own", 5);
    tree.folder(".other/shared");
    tree.file("outside/data/blob", 7000);
    tree.folder(".twice/one");
    tree.folder(".twice/two");
    tree.file("cache/hf/x", 300);
    tree.file("cache/rest", 40);
    tree.folder(".view/cache");
    tree.folder("alias");

    const auto result = testing::runInMountNamespace([&] {
        bindMount(tree / ".same/source", tree / ".same/the copy");
        bindMount(tree / ".models/m", tree / ".other/shared");
        bindMount(tree / "outside/data", tree / ".twice/one");
        bindMount(tree / "outside/data", tree / ".twice/two");
        bindMount(tree / "cache", tree / ".view/cache");
        bindMount(tree / ".models", tree / "alias");
        // The copies come first in list order, and still give way.
        auto scan = scanOf(
            tree, {location(".other"), location(".same"), location(".models"), location(".twice"),
                   location(".view"), location("cache/hf"), location("alias")});
        std::ranges::sort(scan.findings, {}, [](const auto& f) { return f.location.relativePath; });
        return sizesOf(scan);
    });
    if (!result) {
        GTEST_SKIP() << "mounting is not permitted here";
    }
    // "alias" is ".models" again, so it is measured once; ".view" holds a copy of "cache/hf"
    // and the rest of "cache", which no location measures.
    EXPECT_EQ(*result,
              ".models 20000 1\n"
              ".other 5 1\n"
              ".same 10010 2\n"
              ".twice 7000 1\n"
              ".view 40 1\n"
              "cache/hf 300 1\n");
}

TEST(AIStorageScanner, StopsAtTheEntryLimit) {
    TemporaryTree tree;
    for (const char* name : {"a", "b", "c", "d"}) {
        tree.file(std::string(".four/") + name, 1);
    }
    for (const char* name : {"a", "b", "c"}) {
        tree.file(std::string(".three/") + name, 1);
    }
    tree.file(".nested/sub/a", 1);
    tree.file(".nested/b", 1);

    const auto scan = scanOf(tree, {location(".four"), location(".three"), location(".nested")}, 3);
    EXPECT_EQ(findingFor(scan, ".four").fileCount, 3);
    EXPECT_TRUE(findingFor(scan, ".four").limited);
    EXPECT_EQ(findingFor(scan, ".three").fileCount, 3);
    EXPECT_FALSE(findingFor(scan, ".three").limited);
    EXPECT_FALSE(findingFor(scan, ".nested").limited);  // a folder is an entry: 3 in all
    EXPECT_TRUE(scan.incomplete());

    const auto none = scanOf(tree, {location(".three")}, 0);
    EXPECT_EQ(none.findings[0].fileCount, 0);
    EXPECT_TRUE(none.findings[0].limited);
}

TEST(AIStorageScanner, BoundedListsKeepTheFirstOfEqualSizes) {
    TemporaryTree tree;
    // Names written in creation order; most file systems list a fresh folder that way, so
    // the test reads the order back instead of assuming it.
    for (int index = 0; index < 11; ++index) {
        tree.file(".many/big" + std::to_string(index), 1000 + index);
    }
    tree.file(".many/tie-one", 500);
    tree.file(".many/tie-two", 500);

    const auto finding = scanOf(tree, {location(".many")}).findings[0];
    ASSERT_EQ(finding.largestFiles.size(), 12u);
    EXPECT_EQ(finding.largestFiles.front().bytes, 1010);
    std::vector<std::string> listed;
    for (const auto& entry : std::filesystem::directory_iterator(tree / ".many")) {
        listed.push_back(entry.path().filename());
    }
    const auto firstTie =
        std::ranges::find_if(listed, [](const auto& n) { return n.starts_with("tie"); });
    EXPECT_EQ(finding.largestFiles.back().name(), *firstTie);
}

TEST(AIStorageScanner, CollectsOldLogsAndCleanupFiles) {
    TemporaryTree tree;
    const Date now = currentDate();
    tree.file("logs/app.log.3", 300, now - 8 * day);
    tree.file("logs/recent.log", 200, now - 6 * day);
    tree.file("logs/empty.log", 0, now - 30 * day);
    tree.file("logs/notes.txt", 100, now - 30 * day);
    tree.file("logs/sessions/kept.log", 400, now - 30 * day);
    tree.file("lower/old.log", 100, now - 30 * day);
    tree.file("cache/blob", 5000, now - 2 * day);
    tree.file("cache/fresh", 4000, now - 60);
    tree.file("cache/state.vscdb", 3000, now - 2 * day);
    tree.file("cache/Models/weights.bin", 2000, now - 2 * day);
    tree.file("cache/zero", 0, now - 2 * day);

    const auto scan = scanOf(
        tree, {location("logs", "Logs"), location("lower", "logs"), location("cache", "Cache")});

    const auto& logs = findingFor(scan, "logs");
    EXPECT_THAT(namesOf(logs.oldLogs), ElementsAre("kept.log", "app.log.3", "empty.log"));
    EXPECT_THAT(namesOf(logs.cleanupFiles), ElementsAre("app.log.3"));
    EXPECT_THAT(namesOf(logs.recentCleanupFiles), ElementsAre("app.log.3", "recent.log"));
    EXPECT_TRUE(logs.recentCleanupFiles[0].includesRecent);
    EXPECT_FALSE(logs.cleanupFiles[0].includesRecent);
    EXPECT_EQ(logs.cleanupFiles[0].root, tree / "logs");
    EXPECT_EQ(logs.cleanupFiles[0].category, CleanupCategory::logs);
    EXPECT_EQ(logs.cleanupFiles[0].allocatedBytes, allocatedBytesOf(tree / "logs/app.log.3"));

    const auto& lower = findingFor(scan, "lower");
    EXPECT_TRUE(lower.oldLogs.empty());
    EXPECT_TRUE(lower.cleanupFiles.empty());

    const auto& cache = findingFor(scan, "cache");
    EXPECT_THAT(namesOf(cache.cleanupFiles), ElementsAre("blob"));
    EXPECT_THAT(namesOf(cache.recentCleanupFiles), ElementsAre("blob", "fresh"));
    EXPECT_TRUE(cache.oldLogs.empty());
    EXPECT_EQ(cache.fileCount, 5);
}

// Sets the soft open-file limit for its lifetime.
class OpenFileLimit {
public:
    explicit OpenFileLimit(rlim_t files) {
        EXPECT_EQ(::getrlimit(RLIMIT_NOFILE, &m_old), 0);
        const rlimit lowered{files, m_old.rlim_max};
        EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &lowered), 0);
    }
    OpenFileLimit(const OpenFileLimit&) = delete;
    OpenFileLimit& operator=(const OpenFileLimit&) = delete;
    ~OpenFileLimit() { ::setrlimit(RLIMIT_NOFILE, &m_old); }

private:
    rlimit m_old{};
};

TEST(AIStorageScanner, WalksAnyDepthInOrderWithFewDescriptors) {
    TemporaryTree tree;
    std::string folder = ".deep";
    for (int level = 0; level < 200; ++level) {
        tree.file(folder + "/f", 1000 + level);
        if (level == 40) {
            // Met after the chain below it, so the walk must come back to a folder it parked.
            tree.file(folder + "/z/after-1", 7);
            tree.file(folder + "/z/after-2", 7);
        }
        folder += "/d";
    }
    const auto wanted = scanOf(tree, {location(".deep")});

    auto options = withoutPauses();
    options.threads = 1;
    StorageScan inOrder;
    {
        const OpenFileLimit limit(40);
        inOrder = AIStorageScanner::scan(tree.root(), {location(".deep")}, 100000, {}, options);
    }

    const auto& finding = inOrder.findings.at(0);
    EXPECT_EQ(finding.fileCount, 202);
    EXPECT_EQ(finding.skippedCount, 0);
    EXPECT_FALSE(finding.limited);
    EXPECT_EQ(finding.allocatedBytes, wanted.findings.at(0).allocatedBytes);
    EXPECT_EQ(namesOf(finding.largestFiles), namesOf(wanted.findings.at(0).largestFiles));
}

TEST(AIStorageScanner, MeasuresManyLocationsWithFewDescriptors) {
    TemporaryTree tree;
    std::vector<StorageLocation> locations;
    for (int index = 0; index < 120; ++index) {
        const std::string folder = ".tool-" + std::to_string(index);
        tree.file(folder + "/a", 10);
        tree.file(folder + "/sub/b", 20);
        locations.push_back(location(folder));
    }
    for (const std::size_t threads : {1u, 2u}) {
        SCOPED_TRACE(threads);
        auto options = withoutPauses();
        options.threads = threads;
        StorageScan scan;
        {
            const OpenFileLimit limit(40);
            scan = AIStorageScanner::scan(tree.root(), locations, 100000, {}, options);
        }
        EXPECT_EQ(scan.unreadableLocations, 0);
        ASSERT_EQ(scan.findings.size(), locations.size());
        for (const auto& finding : scan.findings) {
            EXPECT_EQ(finding.fileCount, 2) << finding.url.native();
            EXPECT_EQ(finding.skippedCount, 0) << finding.url.native();
        }
    }
}

TEST(AIStorageScanner, WalksALocationOnlyIfItIsStillTheFolderItLookedAt) {
    TemporaryTree tree;
    tree.file(".first/a", 10);
    tree.file(".second/kept", 10);
    tree.file(".elsewhere/swapped-in", 99999);
    auto options = withoutPauses();
    options.threads = 1;
    bool swapped = false;
    // The first location's finding comes out before the second's walk starts.
    const auto swap = [&](const StorageScan&) {
        if (!swapped) {
            swapped = true;
            std::filesystem::rename(tree.root() / ".second", tree.root() / ".moved");
            std::filesystem::rename(tree.root() / ".elsewhere", tree.root() / ".second");
        }
    };
    const auto scan = AIStorageScanner::scan(tree.root(), {location(".first"), location(".second")},
                                             100000, swap, options);

    ASSERT_TRUE(swapped);
    const auto& second = findingFor(scan, ".second");
    EXPECT_EQ(second.fileCount, 0);
    EXPECT_EQ(second.skippedCount, 1);
    ASSERT_EQ(second.unreadableEntries.size(), 1u);
    EXPECT_EQ(second.unreadableEntries[0].reason, "It was replaced while the scan ran.");
}

TEST(AIStorageScanner, ReportsAnyFileNameExactly) {
    TemporaryTree tree;
    const std::string odd = "line\nbreak \xff\xfe caf\xc3\xa9";
    const auto path = tree.file(".odd/" + odd + "/" + odd, 42);

    const auto finding = scanOf(tree, {location(".odd")}).findings[0];
    EXPECT_EQ(finding.fileCount, 1);
    ASSERT_EQ(finding.largestFiles.size(), 1u);
    EXPECT_EQ(finding.largestFiles[0].url, path);
    EXPECT_EQ(finding.largestFiles[0].name().native(), odd);
}

TEST(AIStorageScanner, WalksBelowTheLongestPathTheSystemAccepts) {
    TemporaryTree tree;
    tree.folder(".deep");
    // Built step by step with relative calls, since the whole path is longer than PATH_MAX.
    const std::string name(200, 'd');
    int folder = ::open((tree / ".deep").c_str(), O_RDONLY | O_DIRECTORY);
    for (int depth = 0; depth < 30; ++depth) {
        ASSERT_EQ(::mkdirat(folder, name.c_str(), 0755), 0);
        const int next = ::openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY);
        ::close(folder);
        folder = next;
    }
    const int file = ::openat(folder, "bottom.bin", O_WRONLY | O_CREAT, 0644);
    ASSERT_EQ(::write(file, "12345", 5), 5);
    ::close(file);
    ::close(folder);

    const auto finding = scanOf(tree, {location(".deep")}).findings[0];
    EXPECT_EQ(finding.fileCount, 1);
    EXPECT_EQ(finding.skippedCount, 0);
    ASSERT_EQ(finding.largestFiles.size(), 1u);
    EXPECT_GT(finding.largestFiles[0].url.native().size(), 6000u);
    EXPECT_EQ(finding.largestFiles[0].name(), "bottom.bin");
}

TEST(AIStorageScanner, ReportsModificationDatesExactly) {
    TemporaryTree tree;
    const Date modified = 700000000.25;
    tree.file(".dated/file", 5, modified);
    const auto finding = scanOf(tree, {location(".dated")}).findings[0];
    EXPECT_EQ(finding.largestFiles[0].modified, modified);
}

TEST(AIStorageScanner, CountsWhatCannotBeReadAsSkipped) {
    TemporaryTree tree;
    const auto work = tree.folder("work");
    const auto result = testing::runUnprivileged(work, [&] {
        std::filesystem::create_directories(work / ".tool/locked");
        std::ofstream(work / ".tool/locked/secret") << "x";
        std::ofstream(work / ".tool/visible") << "abc";
        ::chmod((work / ".tool/locked").c_str(), 0);
        std::filesystem::create_directories(work / ".closed");
        ::chmod((work / ".closed").c_str(), 0);
        std::string answers;
        // In order, and in parallel, and over the entry limit: the same entries are named.
        for (const auto& [threads, limit] : {std::pair{1, 100}, {2, 100}, {2, 2}}) {
            auto options = withoutPauses();
            options.threads = static_cast<std::size_t>(threads);
            const auto scan = AIStorageScanner::scan(work, {location(".tool"), location(".closed")},
                                                     limit, {}, options);
            const auto& unreadable = scan.findings[0].unreadableEntries;
            answers +=
                std::to_string(scan.findings.size()) + " " +
                std::to_string(scan.findings[0].fileCount) + " " +
                std::to_string(scan.findings[0].skippedCount) + " " +
                std::to_string(scan.unreadableLocations) + " " + std::to_string(scan.incomplete()) +
                " " + scan.unreadableFolders.at(0).path.filename().native() + ": " +
                scan.unreadableFolders.at(0).reason + " | " + std::to_string(unreadable.size()) +
                " " + unreadable.at(0).path.lexically_relative(work).native() + ": " +
                unreadable.at(0).reason + "\n";
        }
        return answers;
    });
    if (!result) {
        GTEST_SKIP() << "an unprivileged user cannot reach " << work
                     << " to provoke permission faults";
    }
    const std::string expected =
        "1 1 1 1 1 .closed: You don’t have permission to access it. | 1 .tool/locked: You don’t "
        "have permission to access it.\n";
    EXPECT_EQ(*result, expected + expected + expected);
}

TEST(AIStorageScanner, ReportsProgressAndStopsWhenAsked) {
    TemporaryTree tree;
    tree.file(".a/x", 1);
    tree.file(".b/y", 1);
    std::vector<StorageScan> snapshots;
    const auto scan = AIStorageScanner::scan(
        tree.root(), {location(".a"), location(".missing"), location(".b")}, 100,
        [&](const StorageScan& snapshot) { snapshots.push_back(snapshot); }, withoutPauses());
    ASSERT_EQ(snapshots.size(), 1u);  // the second finding comes well within 0.25 s
    EXPECT_EQ(snapshots[0].findings.size(), 1u);
    EXPECT_LE(snapshots[0].completedAt, scan.completedAt);

    std::stop_source stop;
    const auto cancelOnFirst = [&](const StorageScan&) { stop.request_stop(); };
    EXPECT_THROW(AIStorageScanner::scan(tree.root(), {location(".a"), location(".b")}, 100,
                                        cancelOnFirst, withoutPauses(stop.get_token())),
                 ScanCancelled);
}

TEST(AIStorageScanner, OldLogTestLooksAtCategoryNameAndAge) {
    const Date now = 1000 * day;
    const auto old = [&](const char* name, Date age, const char* category = "Logs",
                         bool recent = false) {
        return AIStorageScanner::isOldLog(std::string("/h/") + name, now - age, category, now,
                                          recent);
    };
    EXPECT_TRUE(old("app.log.3", 8 * day));
    EXPECT_FALSE(old("app.log.3", 6 * day));
    EXPECT_TRUE(old("app.log.3", 6 * day, "Logs", true));
    EXPECT_TRUE(old("Server.LOG", 7 * day));
    EXPECT_FALSE(old("app.log.3", 8 * day, "logs"));
    EXPECT_FALSE(old("app.log.old", 8 * day));
    EXPECT_FALSE(old("app.logs", 8 * day));
    EXPECT_FALSE(AIStorageScanner::isOldLog("/h/x.log", distantFuture, "Logs", now, false));
}

}  // namespace
}  // namespace tallowmere
