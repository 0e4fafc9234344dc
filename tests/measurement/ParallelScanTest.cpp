#include <gtest/gtest.h>
#include <sys/mount.h>

#include <random>
#include <sstream>

#include "TemporaryTree.h"
#include "measurement/AIStorageScanner.h"

namespace tallowmere {
namespace {

using testing::TemporaryTree;

constexpr Date day = 86400;

// Everything a scan reports except when it finished.
std::string describe(const StorageScan& scan) {
    std::ostringstream text;
    text << scan.absentLocations << ' ' << scan.unreadableLocations << '\n';
    const auto entries = [&](const char* name, const std::vector<FileEntry>& list) {
        text << name;
        for (const auto& entry : list) {
            text << ' ' << entry.url.native() << ':' << entry.bytes << ':' << entry.modified << ':'
                 << (entry.fileIdentity ? entry.fileIdentity->text() : "-");
        }
        text << '\n';
    };
    const auto files = [&](const char* name, const std::vector<StorageCleanupFile>& list) {
        text << name;
        for (const auto& file : list) {
            text << ' ' << file.entry.url.native() << ':' << file.allocatedBytes << ':'
                 << file.includesRecent;
        }
        text << '\n';
    };
    for (const auto& finding : scan.findings) {
        text << finding.url.native() << ' ' << finding.allocatedBytes << ' ' << finding.logicalBytes
             << ' ' << finding.fileCount << ' ' << finding.skippedCount << ' ' << finding.limited
             << '\n';
        entries("largest", finding.largestFiles);
        entries("old", finding.oldLogs);
        files("cleanup", finding.cleanupFiles);
        files("recent", finding.recentCleanupFiles);
    }
    return text.str();
}

// A random home: tool folders nested in each other, many files of few distinct sizes (so
// ties abound), old and new logs, hard links within and across locations (for every file in
// some homes), symbolic links, sometimes a deep chain or a folder wider than a listing read.
std::vector<StorageLocation> randomHome(const TemporaryTree& tree, std::mt19937& random) {
    const std::vector<StorageLocation> locations = {{"A", "Agent data", ".a", ""},
                                                    {"A", "Logs", ".a/logs", ""},
                                                    {"B", "Cache", ".cache/b", ""},
                                                    {"C", "Cache", ".cache", ""},
                                                    {"D", "Models", ".d/deep/models", ""},
                                                    {"A", "Sessions", ".a/sessions", ""},
                                                    {"E", "Logs", ".e", ""},
                                                    {"F", "Agent data", ".missing", ""}};
    const std::vector<std::string> folders = {".a",       ".a/logs",  ".a/sessions/x",
                                              ".cache/b", ".cache/c", ".d/deep/models/m",
                                              ".e",       ".a/sub/y"};
    const std::vector<std::string> names = {"app.log", "app.log.3", "blob",
                                            "x.json",  "state.db",  "Models"};
    std::vector<std::string> made;
    // Like a package store, where nearly every file has a second name.
    const bool linkedStore = random() % 3 == 0;
    const int fileCount = std::uniform_int_distribution<int>(20, 400)(random);
    for (int index = 0; index < fileCount; ++index) {
        const auto& folder = folders[random() % folders.size()];
        const std::string sub = random() % 3 == 0 ? "/s" + std::to_string(random() % 4) : "";
        const std::string path =
            folder + sub + "/" + std::to_string(index) + names[random() % names.size()];
        tree.file(path, static_cast<std::int64_t>(random() % 4) * 1000,
                  currentDate() - (random() % 20) * day);
        made.push_back(path);
        if (linkedStore || random() % 10 == 0) {
            const auto& other = random() % 2 == 0 ? folder : folders[random() % folders.size()];
            tree.hardLink(path, other + "/link" + std::to_string(index));
        }
        if (random() % 15 == 0) {
            tree.symlink("../" + path, folder + "/sym" + std::to_string(index));
        }
    }
    if (random() % 2 == 0) {
        // A chain deeper than the walk in order keeps folders open, with a folder met after it.
        std::string chain = ".a/chain";
        const int depth = std::uniform_int_distribution<int>(20, 60)(random);
        for (int level = 0; level < depth; ++level) {
            tree.file(chain + "/" + names[random() % names.size()],
                      static_cast<std::int64_t>(random() % 4) * 1000,
                      currentDate() - (random() % 20) * day);
            if (level % 7 == 3) {
                tree.file(chain + "/z/later", 1000);
            }
            chain += "/d";
        }
    }
    if (random() % 3 == 0) {
        // A folder wider than one listing chunk.
        for (int index = 0; index < 2500; ++index) {
            tree.file(".cache/c/wide/" + std::to_string(index),
                      static_cast<std::int64_t>(random() % 3) * 5000);
        }
    }
    return locations;
}

// Scans with one thread and with several at a few entry limits; "" when every answer is the
// one thread's, else where they part.
std::string partingOfThreads(const TemporaryTree& tree,
                             const std::vector<StorageLocation>& locations) {
    for (const std::int64_t limit : {std::int64_t{7}, std::int64_t{60}, std::int64_t{100000}}) {
        ScanOptions options;
        options.pauses = false;
        options.threads = 1;
        const auto expected =
            describe(AIStorageScanner::scan(tree.root(), locations, limit, {}, options));
        for (const std::size_t threads : {2u, 3u, 8u}) {
            options.threads = threads;
            const auto answer =
                describe(AIStorageScanner::scan(tree.root(), locations, limit, {}, options));
            if (answer != expected) {
                return "limit " + std::to_string(limit) + ", " + std::to_string(threads) +
                       " threads:\n" + answer + "one thread:\n" + expected;
            }
        }
    }
    return "";
}

TEST(ParallelScan, AnswersExactlyAsOneThread) {
    std::mt19937 random(20261123);
    for (int round = 0; round < 8; ++round) {
        TemporaryTree tree;
        const auto locations = randomHome(tree, random);
        EXPECT_EQ(partingOfThreads(tree, locations), "") << "round " << round;
    }
}

TEST(ParallelScan, AnswersExactlyAsOneThreadAcrossBindMounts) {
    std::mt19937 random(20261124);
    for (int round = 0; round < 3; ++round) {
        TemporaryTree tree;
        const auto locations = randomHome(tree, random);
        tree.file("outside/blob", 3000);
        tree.file(".e/shared", 2000);
        tree.hardLink(".e/shared", "outside/shared");
        // A copy of part of a location, an outside folder met twice, a copy of a whole
        // location, and a folder holding another location's folder.
        const std::vector<std::pair<std::string, std::string>> binds = {
            {".a/sub", ".cache/c/sub-view"},
            {"outside", ".e/out-one"},
            {"outside", ".cache/b/out-two"},
            {".cache", ".d/deep/models/m/cache-view"},
            {".d", ".e/d-view"}};
        for (const auto& bind : binds) {
            tree.folder(bind.second);
        }
        const auto parting = testing::runInMountNamespace([&] {
            for (const auto& [source, target] : binds) {
                if (::mount((tree / source).c_str(), (tree / target).c_str(), nullptr, MS_BIND,
                            nullptr) != 0) {
                    return "mount --bind " + target + " failed";
                }
            }
            return partingOfThreads(tree, locations);
        });
        if (!parting) {
            GTEST_SKIP() << "mounting is not permitted here";
        }
        EXPECT_EQ(*parting, "") << "round " << round;
    }
}

// A location over the limit costs what its first entries do: the walk takes up no entry past
// the limit, on any thread, and never walks a location twice.
TEST(ParallelScan, WalksNoEntryPastTheLimit) {
    TemporaryTree tree;
    for (int index = 0; index < 3000; ++index) {
        tree.file(".big/" + std::to_string(index % 9) + "/" + std::to_string(index), 100);
    }
    tree.file(".small/a", 100);
    const std::vector<StorageLocation> locations = {{"A", "Cache", ".big", ""},
                                                    {"B", "Cache", ".small", ""}};
    for (const std::size_t threads : {1u, 2u, 4u}) {
        ScanMeter meter;
        ScanOptions options;
        options.pauses = false;
        options.threads = threads;
        options.meter = &meter;
        const auto scan = AIStorageScanner::scan(tree.root(), locations, 250, {}, options);
        EXPECT_EQ(meter.entries, 250 + 1) << threads << " threads";
        ASSERT_EQ(scan.findings.size(), 2u);
        EXPECT_TRUE(scan.findings[0].limited);
    }
}

TEST(ParallelScan, StopsEveryThreadWhenAsked) {
    TemporaryTree tree;
    tree.file(".first/a", 1);
    for (int index = 0; index < 3000; ++index) {
        tree.file(".second/" + std::to_string(index % 7) + "/" + std::to_string(index), index);
    }
    const std::vector<StorageLocation> locations = {{"A", "Cache", ".first", ""},
                                                    {"B", "Cache", ".second", ""}};
    std::stop_source stop;
    ScanOptions options;
    options.stopToken = stop.get_token();
    options.threads = 4;
    // The first finding comes while the other threads are still in the second location.
    const auto stopOnFirst = [&](const StorageScan&) { stop.request_stop(); };
    EXPECT_THROW(AIStorageScanner::scan(tree.root(), locations, 100000, stopOnFirst, options),
                 ScanCancelled);
}

}  // namespace
}  // namespace tallowmere
