#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <stop_token>
#include <string>

#include "ScopedVariable.h"
#include "TemporaryTree.h"
#include "measurement/AIStorageScanner.h"
#include "platform/FileDescriptor.h"
#include "removal/FileCleanup.h"
#include "removal/LocationRemovalReview.h"
#include "removal/RemovalErrors.h"
#include "removal/StorageLocationTrash.h"

// Another process acting at the worst moments of a removal: each test puts a victim where a
// reviewed item was, or changes the item, at one step of its removal, and checks that no
// victim is ever deleted or left in the Trash as the reviewed item.

namespace tallowmere {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::presentAt;
using testing::ScopedVariable;
using testing::TemporaryTree;
using Step = RemovalOptions::Step;

constexpr Date day = 86400;
constexpr int victimCount = 4;
const std::string changed = FileTrashError().what();

constexpr StorageRemovalMethod methods[] = {StorageRemovalMethod::trash,
                                            StorageRemovalMethod::permanent};
constexpr Step steps[] = {Step::found, Step::taken, Step::checked};

std::string nameOf(StorageRemovalMethod method, Step step) {
    return std::string(method == StorageRemovalMethod::trash ? "trash" : "permanent") + " at " +
           (step == Step::found   ? "found"
            : step == Step::taken ? "taken"
                                  : "checked");
}

// Puts what is at `intruder` at `place`: swapped with what stands there, or moved in when the
// place is empty, as a process that renames folders around would.
void putInPlace(const fs::path& intruder, const fs::path& place) {
    if (::renameat2(AT_FDCWD, intruder.c_str(), AT_FDCWD, place.c_str(), RENAME_EXCHANGE) != 0) {
        fs::rename(intruder, place);
    }
}

// Every file under `folder` whose content is "victim", links not followed.
int victimsUnder(const fs::path& folder) {
    int count = 0;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file() && !entry.is_symlink()) {
            std::ifstream file(entry.path());
            std::string content;
            std::getline(file, content);
            count += content == "victim";
        }
    }
    return count;
}

struct RemovalRaces : ::testing::Test {
    TemporaryTree tree;
    ScopedVariable home{"HOME", (tree / "home").native()};
    ScopedVariable dataHome{"XDG_DATA_HOME", (tree / "home/.local/share").native()};
    fs::path trash = tree / "home/.local/share/Trash";

    // A reviewed folder `round/data` and a victim folder beside it.
    StorageLocationSnapshot reviewedFolder(const std::string& round) const {
        tree.file("home/" + round + "/data/a/one", 10);
        tree.file("home/" + round + "/data/two", 20);
        for (int index = 0; index < victimCount; ++index) {
            writeVictim(round + "/victim/v" + std::to_string(index));
        }
        ScanOptions options;
        options.pauses = false;
        return StorageLocationTrash::snapshot(tree / ("home/" + round + "/data"), "Agent data", "",
                                              100000, options);
    }

    void writeVictim(const std::string& relative) const {
        fs::create_directories((tree / "home" / relative).parent_path());
        std::ofstream(tree / "home" / relative) << "victim\n";
    }

    // The victims of one round still among its folders, when no undo record claims one.
    int victimsSafe(const std::string& round, const StorageCleanupResult& result) const {
        for (const auto& item : result.items) {
            const bool claimed = fs::is_directory(item.trashURL) ? victimsUnder(item.trashURL) > 0
                                                                 : victimsAt(item.trashURL);
            if (claimed) {
                return -1;
            }
        }
        return victimsUnder(tree / "home" / round);
    }

    static bool victimsAt(const fs::path& file) {
        std::ifstream stream(file);
        std::string content;
        std::getline(stream, content);
        return content == "victim";
    }

    static RemovalOptions actingAt(Step when, const std::function<void()>& action) {
        RemovalOptions options;
        options.pauses = false;
        options.onStep = [when, action, done = false](Step step, const fs::path&) mutable {
            if (step == when && !done) {
                done = true;
                action();
            }
        };
        return options;
    }
};

TEST_F(RemovalRaces, AFolderPutInTheReviewedPlaceIsNeverRemoved) {
    for (const auto method : methods) {
        for (const auto step : steps) {
            const std::string round = "swap-" + nameOf(method, step);
            const auto reviewed = reviewedFolder(round);
            const auto place = tree / ("home/" + round + "/data");
            const auto victim = tree / ("home/" + round + "/victim");
            const auto result = StorageLocationTrash::remove(
                {reviewed}, method, actingAt(step, [&] { putInPlace(victim, place); }));

            SCOPED_TRACE(round);
            EXPECT_EQ(victimsSafe(round, result), victimCount);
            if (step == Step::found) {
                // Taken in place of the reviewed folder, found out, and put back.
                EXPECT_EQ(result.moved, 0);
                EXPECT_THAT(result.errors, ElementsAre("data: " + changed));
                EXPECT_TRUE(presentAt(victim / "two"));
            } else {
                EXPECT_EQ(result.moved, 1);
                EXPECT_THAT(result.errors, IsEmpty());
                EXPECT_FALSE(presentAt(victim));
            }
            EXPECT_EQ(victimsUnder(place), victimCount);
        }
    }
}

TEST_F(RemovalRaces, AParentSwappedBeforeOrDuringTheRemovalNeverCostsAVictim) {
    for (const auto method : methods) {
        for (const auto step : steps) {
            const std::string round = "parent-" + nameOf(method, step);
            const auto reviewed = reviewedFolder(round + "/p");
            writeVictim(round + "/q/data/v");
            const auto parent = tree / ("home/" + round + "/p");
            const auto other = tree / ("home/" + round + "/q");
            const auto result = StorageLocationTrash::remove(
                {reviewed}, method, actingAt(step, [&] { putInPlace(other, parent); }));

            SCOPED_TRACE(round);
            EXPECT_EQ(victimsSafe(round, result), victimCount + 1);
            EXPECT_EQ(victimsUnder(tree / ("home/" + round)), victimCount + 1);
        }
    }
    // Swapped before the removal looks: the folder found there is not the reviewed one.
    const auto reviewed = reviewedFolder("before/p");
    writeVictim("before/q/data/v");
    putInPlace(tree / "home/before/q", tree / "home/before/p");
    const auto result = StorageLocationTrash::remove({reviewed}, StorageRemovalMethod::permanent);
    EXPECT_THAT(result.errors, ElementsAre("data: " + changed));
    EXPECT_TRUE(presentAt(tree / "home/before/p/data/v"));
    EXPECT_TRUE(presentAt(tree / "home/before/q/data/two"));
}

TEST_F(RemovalRaces, AFileAddedDuringTheCheckStopsTheRemovalAndOneAddedAfterItIsKept) {
    for (const auto method : methods) {
        const std::string round = "added-" + nameOf(method, Step::taken);
        const auto reviewed = reviewedFolder(round);
        const auto place = tree / ("home/" + round + "/data");
        // Added through a descriptor held on the folder, as a running tool would add a file.
        const FileDescriptor held(::open(place.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        const auto addFile = [&] {
            FileDescriptor(::openat(held.get(), "late", O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
        };
        const auto during =
            StorageLocationTrash::remove({reviewed}, method, actingAt(Step::taken, addFile));
        SCOPED_TRACE(round);
        EXPECT_EQ(during.moved, 0);
        EXPECT_THAT(during.errors, ElementsAre("data: " + changed));
        EXPECT_TRUE(presentAt(place / "late"));
        EXPECT_TRUE(presentAt(place / "a/one"));
    }

    const auto reviewed = reviewedFolder("after");
    const auto place = tree / "home/after/data";
    const FileDescriptor held(::open((place / "a").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const auto addFile = [&] {
        FileDescriptor(::openat(held.get(), "late", O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
    };
    const auto deleted = StorageLocationTrash::remove({reviewed}, StorageRemovalMethod::permanent,
                                                      actingAt(Step::checked, addFile));
    EXPECT_EQ(deleted.moved, 0);
    ASSERT_EQ(deleted.errors.size(), 1u);
    EXPECT_THAT(deleted.errors[0], HasSubstr("data: 1 item was added or changed while it was "
                                             "being deleted"));
    // Back at its place with what nobody reviewed: the new file, and the folder that changed.
    EXPECT_TRUE(presentAt(place / "a/late"));
    EXPECT_TRUE(presentAt(place / "a/one"));
    EXPECT_FALSE(presentAt(place / "two"));

    // In the Trash it is kept whole; the undo then says it changed there and leaves it.
    const auto trashedReview = reviewedFolder("trashed");
    const auto trashedPlace = tree / "home/trashed/data";
    const FileDescriptor inside(::open(trashedPlace.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const auto trashed = StorageLocationTrash::remove(
        {trashedReview}, StorageRemovalMethod::trash, actingAt(Step::checked, [&] {
            FileDescriptor(::openat(inside.get(), "late", O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
        }));
    ASSERT_EQ(trashed.items.size(), 1u);
    const auto restored = AIStorageCleanup::restore(trashed.items);
    EXPECT_THAT(restored.errors, ElementsAre("data: " + changed));
    EXPECT_TRUE(presentAt(trashed.items[0].trashURL / "late"));
}

struct FileRemovalRaces : RemovalRaces {
    // An old log file of a "Logs" location and, beside it, a victim of the same size and date.
    StorageCleanupFile reviewedLog(const std::string& round) const {
        const Date old = currentDate() - 20 * day;
        tree.file("home/" + round + "/logs/app.log", 7, old);
        writeVictim(round + "/logs/victim.txt");
        testing::setModified(tree / ("home/" + round + "/logs/victim.txt"), old);
        ScanOptions options;
        options.pauses = false;
        return AIStorageScanner::scan(tree / "home", {{"Tool", "Logs", round + "/logs", ""}}, 100,
                                      {}, options)
            .findings.at(0)
            .cleanupFiles.at(0);
    }
};

TEST_F(FileRemovalRaces, AFileSwappedInAtAnyStepIsNeverRemoved) {
    for (const auto method : methods) {
        for (const auto step : steps) {
            const std::string round = "file-" + nameOf(method, step);
            const auto reviewed = reviewedLog(round);
            const auto place = tree / ("home/" + round + "/logs/app.log");
            const auto victim = tree / ("home/" + round + "/logs/victim.txt");
            const auto result = AIStorageCleanup::remove(
                {reviewed}, method, actingAt(step, [&] { putInPlace(victim, place); }));

            SCOPED_TRACE(round);
            EXPECT_EQ(victimsSafe(round, result), 1);
            EXPECT_TRUE(victimsAt(place));
            EXPECT_EQ(result.moved, step == Step::found ? 0 : 1)
                << ::testing::PrintToString(result.errors);
        }
    }
}

TEST_F(FileRemovalRaces, StopsBetweenItemsAndReportsEachAsItLands) {
    const auto first = reviewedLog("first");
    const auto second = reviewedLog("second");
    std::stop_source stop;
    RemovalOptions options;
    options.stopToken = stop.get_token();
    std::vector<fs::path> told;
    options.onTrashed = [&](const TrashedStorageFile& item) {
        told.push_back(item.trashURL);
        stop.request_stop();  // as Ctrl-C would, while the first file is in hand
    };
    const auto result =
        AIStorageCleanup::remove({first, second}, StorageRemovalMethod::trash, options);
    EXPECT_EQ(result.moved, 1);
    EXPECT_THAT(result.errors, IsEmpty());
    ASSERT_EQ(result.items.size(), 1u);
    EXPECT_THAT(told, ElementsAre(result.items[0].trashURL));
    EXPECT_TRUE(presentAt(tree / "home/second/logs/app.log"));
}

TEST_F(FileRemovalRaces, ARewriteThatKeepsSizeAndDateIsStillAChange) {
    // A reviewed log rewritten in place with the same size and date.
    const auto log = reviewedLog("rewritten");
    const auto path = tree / "home/rewritten/logs/app.log";
    const std::vector<StorageTool> tools = {
        {"Tool",
         {AIStorageScanner::scan(tree / "home", {{"Tool", "Logs", "rewritten/logs", ""}}, 100)
              .findings.at(0)}}};
    const auto review =
        LocationRemovalReview::prepare(tools, "Tool", {tools[0].findings[0].id()}, false);
    ASSERT_TRUE(review && review->files.size() == 1 && review->files[0].statusChanged);
    std::ofstream(path) << "changed";
    testing::setModified(path, log.entry.modified);
    const auto result = AIStorageCleanup::remove(review->files, StorageRemovalMethod::permanent);
    EXPECT_THAT(result.errors, ElementsAre("app.log: " + changed));
    EXPECT_TRUE(presentAt(path));

    // A file inside a reviewed folder, the same.
    const auto folder = reviewedFolder("inside");
    const auto inner = tree / "home/inside/data/two";
    const auto modified = fs::last_write_time(inner);
    std::ofstream(inner) << std::string(20, 'y');
    fs::last_write_time(inner, modified);
    const auto folderResult =
        StorageLocationTrash::remove({folder}, StorageRemovalMethod::permanent);
    EXPECT_THAT(folderResult.errors, ElementsAre("data: " + changed));
    EXPECT_TRUE(presentAt(inner));
}

}  // namespace
}  // namespace tallowmere
