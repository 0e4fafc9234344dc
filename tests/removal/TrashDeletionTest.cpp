#include "removal/TrashDeletion.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "ScopedVariable.h"
#include "TemporaryTree.h"
#include "measurement/AIStorageScanner.h"
#include "removal/FileCleanup.h"
#include "removal/RemovalErrors.h"
#include "removal/StorageLocationTrash.h"

namespace tallowmere {
namespace {

namespace fs = std::filesystem;
using testing::allocatedBytesOf;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::presentAt;
using testing::ScopedVariable;
using testing::TemporaryTree;
using Step = RemovalOptions::Step;

const std::string changed = FileTrashError().what();

fs::path infoOf(const fs::path& trashed) {
    return trashed.parent_path().parent_path() / "info" /
           (trashed.filename().native() + ".trashinfo");
}

struct TrashDeletion : ::testing::Test {
    TemporaryTree tree;
    ScopedVariable home{"HOME", (tree / "home").native()};
    ScopedVariable dataHome{"XDG_DATA_HOME", (tree / "home/data").native()};

    // Cache files of these names moved to the Trash one by one, each the only file left there.
    std::vector<TrashedStorageFile> trashedFiles(const std::vector<std::string>& names) const {
        std::vector<TrashedStorageFile> trashed;
        for (const auto& name : names) {
            tree.file("home/cache/" + name, 5000, currentDate() - 3 * 86400);
            const auto finding =
                AIStorageScanner::scan(tree / "home", {{"Tool", "Cache", "cache", ""}}, 1000);
            const auto moved = AIStorageCleanup::moveToTrash(finding.findings.at(0).cleanupFiles);
            trashed.push_back(moved.items.at(0));
        }
        return trashed;
    }

    // The folder `name` under home, reviewed and moved to the Trash.
    TrashedStorageFile trashedFolder(const std::string& name) const {
        tree.file("home/" + name + "/a/one", 3000);
        tree.file("home/" + name + "/two", 9000);
        tree.hardLink("home/" + name + "/two", "home/" + name + "/a/two-again");
        const auto snapshot = StorageLocationTrash::snapshot(tree / ("home/" + name), "Agent data",
                                                             "", 1000, ScanOptions{});
        return StorageLocationTrash::moveToTrash({snapshot}).items.at(0);
    }
};

TEST_F(TrashDeletion, DeletesExactlyTheListedItemsAndCountsTheSpaceFreed) {
    const auto files = trashedFiles({"gone", "linked", "unlisted"});
    const auto folder = trashedFolder("agent");
    fs::create_hard_link(files[1].trashURL, tree / "kept-link");
    std::int64_t expected = allocatedBytesOf(files[0].trashURL);
    for (const char* part : {"", "a", "a/one", "two"}) {  // "a/two-again" is "two" again
        expected += allocatedBytesOf(folder.trashURL / part);
    }

    std::stop_source stop;
    stop.request_stop();
    RemovalOptions stopped;
    stopped.stopToken = stop.get_token();
    EXPECT_EQ(AIStorageCleanup::deleteFromTrash(files, stopped).remaining, files);

    const auto result = AIStorageCleanup::deleteFromTrash({files[0], folder, files[1]});
    EXPECT_EQ(result.deleted, 3) << ::testing::PrintToString(result.errors);
    EXPECT_EQ(result.bytesFreed, expected);  // the hard-linked file frees nothing
    EXPECT_THAT(result.remaining, IsEmpty());
    for (const auto& item : {files[0], folder, files[1]}) {
        EXPECT_FALSE(presentAt(item.trashURL));
        EXPECT_FALSE(presentAt(infoOf(item.trashURL)));
    }
    EXPECT_TRUE(presentAt(files[2].trashURL));
    EXPECT_TRUE(presentAt(infoOf(files[2].trashURL)));
    EXPECT_EQ(fs::file_size(tree / "kept-link"), 5000u);
}

TEST_F(TrashDeletion, KeepsWhatChangedInTheTrashAndDropsWhatLeftIt) {
    const auto files = trashedFiles({"grown", "replaced", "emptied"});
    const auto folder = trashedFolder("agent");
    std::ofstream(files[0].trashURL, std::ios::app) << "more";
    // Same name, size and date: only the identity tells it apart.
    tree.file("impostor", 5000, files[1].original.modified);
    fs::rename(tree / "impostor", files[1].trashURL);
    fs::remove(files[2].trashURL);
    std::ofstream(folder.trashURL / "a/new") << "new";

    const auto result = AIStorageCleanup::deleteFromTrash({files[0], files[1], files[2], folder});
    EXPECT_EQ(result.deleted, 0);
    EXPECT_EQ(result.bytesFreed, 0);
    EXPECT_THAT(result.remaining, ElementsAre(files[0], files[1], folder));
    EXPECT_THAT(result.errors,
                ElementsAre("grown: " + changed, "replaced: " + changed,
                            "emptied: It is no longer in the Trash.", "agent: " + changed));
    EXPECT_EQ(fs::file_size(files[0].trashURL), 5004u);
    EXPECT_TRUE(presentAt(files[1].trashURL));
    EXPECT_TRUE(presentAt(folder.trashURL / "a/one"));
    EXPECT_TRUE(presentAt(infoOf(folder.trashURL)));
}

TEST_F(TrashDeletion, ForgedRecordsDeleteNothing) {
    const auto trashed = trashedFiles({"blob"}).at(0);
    const auto lookalike = tree.file("home/elsewhere/Trash/files/blob", 5000);
    auto notATrash = trashed;
    notATrash.trashURL = lookalike;
    auto elsewhere = trashed;
    elsewhere.original.url = tree / "home/documents/blob";
    auto notStandard = trashed;
    notStandard.trashURL = tree / "home/data/Trash/files/../files/blob";
    auto notInFiles = notStandard;
    notInFiles.trashURL = tree / "home/data/Trash/info/blob.trashinfo";

    const auto result =
        AIStorageCleanup::deleteFromTrash({notInFiles, notATrash, elsewhere, notStandard});
    EXPECT_EQ(result.deleted, 0);
    EXPECT_THAT(result.remaining, ElementsAre(notInFiles, notATrash, elsewhere, notStandard));
    EXPECT_THAT(
        result.errors,
        ElementsAre(
            "blob: It is not in a trash’s files folder, so it is not deleted from there.",
            "blob: It is not in one of your trash folders, so it is not deleted from there.",
            "blob: Its trash record does not name this place as where it came from, so it is "
            "not deleted.",
            "blob: Its undo record names a path that is not absolute and standardised, so it "
            "was not used."));
    EXPECT_TRUE(presentAt(lookalike));
    EXPECT_TRUE(presentAt(infoOf(trashed.trashURL)));
    EXPECT_TRUE(presentAt(trashed.trashURL));
}

TEST_F(TrashDeletion, AFilePutAtTheTrashNameMeanwhileSurvives) {
    for (const auto when : {Step::found, Step::taken, Step::checked}) {
        // Each round's item gets a free trash name; earlier intruders keep theirs.
        const auto trashed = trashedFiles({"blob"}).at(0);
        const auto intruder = tree.file("intruder", 5000, trashed.original.modified);
        const auto witness = tree / ("witness" + std::to_string(static_cast<int>(when)));
        fs::create_hard_link(intruder, witness);
        RemovalOptions options;
        options.onStep = [&](Step step, const fs::path&) {
            if (step == when) {
                fs::rename(intruder, trashed.trashURL);  // replaces the item when not taken yet
            }
        };
        const auto result = AIStorageCleanup::deleteFromTrash({trashed}, options);

        SCOPED_TRACE(static_cast<int>(when));
        EXPECT_TRUE(fs::equivalent(trashed.trashURL, witness));
        if (when == Step::found) {
            EXPECT_THAT(result.errors, ElementsAre("blob: " + changed));
            EXPECT_THAT(result.remaining, ElementsAre(trashed));
        } else {
            EXPECT_EQ(result.deleted, 1) << ::testing::PrintToString(result.errors);
        }
    }
}

}  // namespace
}  // namespace tallowmere
