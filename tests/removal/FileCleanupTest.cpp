#include "removal/FileCleanup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "ScopedVariable.h"
#include "TemporaryTree.h"
#include "measurement/AIStorageScanner.h"
#include "removal/RemovalErrors.h"

namespace tallowmere {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::presentAt;
using testing::ScopedVariable;
using testing::TemporaryTree;
using ::testing::UnorderedElementsAre;

constexpr Date day = 86400;
const std::string changed = FileTrashError().what();

// A temporary home whose Trash lies inside it, with "cache" (category Cache) and "logs"
// (category Logs) locations.
struct CleanupFixture : ::testing::Test {
    TemporaryTree tree;
    ScopedVariable dataHome{"XDG_DATA_HOME", (tree / "data").native()};

    StorageFinding scanned(const std::string& folder, const std::string& category) const {
        ScanOptions options;
        options.pauses = false;
        return AIStorageScanner::scan(tree.root(), {{"Tool", category, folder, ""}}, 1000, {},
                                      options)
            .findings.at(0);
    }
};

TEST_F(CleanupFixture, RemovesOnlyFilesStillAsScanned) {
    const Date old = currentDate() - 3 * day;
    tree.file("cache/kept-date", 100, old);
    tree.file("cache/replaced", 200, old);
    tree.file("cache/fine", 300, old);
    const auto files = scanned("cache", "Cache").cleanupFiles;
    ASSERT_EQ(files.size(), 3u);

    testing::setModified(tree / "cache/kept-date", old + 1);
    // Same name, size and date; a new file (made before the old one goes, so its inode differs).
    tree.file("replacement", 200, old);
    std::filesystem::rename(tree / "replacement", tree / "cache/replaced");

    auto listed = files;
    listed.push_back(files[0]);  // a path listed twice is handled once
    const auto result = AIStorageCleanup::moveToTrash(listed);
    EXPECT_EQ(result.moved, 1);
    ASSERT_EQ(result.items.size(), 1u);
    const auto fine = std::ranges::find(files, FilePath(tree / "cache/fine"),
                                        [](const auto& file) { return file.entry.url; });
    EXPECT_EQ(result.items[0].original, fine->entry);
    EXPECT_EQ(result.items[0].trashURL, tree / "data/Trash/files/fine");
    EXPECT_FALSE(result.items[0].locationSnapshot);
    EXPECT_THAT(result.errors,
                UnorderedElementsAre("replaced: " + changed, "kept-date: " + changed));
    EXPECT_TRUE(presentAt(tree / "cache/kept-date"));
    EXPECT_TRUE(presentAt(tree / "cache/replaced"));
    EXPECT_FALSE(presentAt(tree / "cache/fine"));
}

TEST_F(CleanupFixture, ChecksEligibilityAndPlaceAgain) {
    tree.file("logs/fresh.log", 10, currentDate() - 60);
    tree.file("logs/gone.log", 10, currentDate() - 60);
    const auto finding = scanned("logs", "Logs");
    ASSERT_TRUE(finding.cleanupFiles.empty());
    ASSERT_EQ(finding.recentCleanupFiles.size(), 2u);

    auto recent = finding.recentCleanupFiles;
    auto notRecent = recent[0];
    notRecent.includesRecent = false;
    auto outside = recent[0];
    outside.root = tree / "elsewhere";
    std::filesystem::remove(tree / "logs/gone.log");
    const auto refused =
        AIStorageCleanup::remove({notRecent, outside}, StorageRemovalMethod::trash);
    EXPECT_EQ(refused.moved, 0);
    EXPECT_THAT(refused.errors,
                ElementsAre("fresh.log: " + changed));  // the second is the same path

    const auto result = AIStorageCleanup::remove(recent, StorageRemovalMethod::permanent);
    EXPECT_EQ(result.moved, 1);
    EXPECT_THAT(result.items, IsEmpty());
    ASSERT_EQ(result.errors.size(), 1u);
    EXPECT_TRUE(result.errors[0].starts_with("gone.log: ")) << result.errors[0];
    EXPECT_FALSE(presentAt(tree / "logs/fresh.log"));
    EXPECT_FALSE(presentAt(tree / "data/Trash"));
}

TEST_F(CleanupFixture, RefusesFilesReachedThroughALink) {
    const Date old = currentDate() - 3 * day;
    tree.file("real/blob", 100, old);
    tree.symlink("real", "cache");
    tree.folder("target");
    auto file = scanned("real", "Cache").cleanupFiles.at(0);
    file.entry.url = tree / "cache/blob";
    file.root = tree / "cache";
    const auto result = AIStorageCleanup::moveToTrash({file});
    EXPECT_THAT(result.errors, ElementsAre("blob: " + changed));
    EXPECT_TRUE(presentAt(tree / "real/blob"));
}

TEST_F(CleanupFixture, RestoresWithoutReplacingAnything) {
    const Date old = currentDate() - 3 * day;
    for (const char* name : {"back", "taken", "orphan"}) {
        tree.file(std::string("cache/") + name + "/blob", 100, old);
    }
    std::vector<StorageCleanupFile> files;
    for (const char* name : {"back", "taken", "orphan"}) {
        const auto found = scanned(std::string("cache/") + name, "Cache").cleanupFiles;
        files.insert(files.end(), found.begin(), found.end());
    }
    const auto removed = AIStorageCleanup::moveToTrash(files);
    ASSERT_EQ(removed.moved, 3) << ::testing::PrintToString(removed.errors);

    tree.file("cache/taken/blob", 7);
    std::filesystem::remove_all(tree / "cache/orphan");
    const auto result = AIStorageCleanup::restore(removed.items);
    EXPECT_EQ(result.restored, 1);
    EXPECT_THAT(result.remaining, ElementsAre(removed.items[1], removed.items[2]));
    ASSERT_EQ(result.errors.size(), 2u);
    EXPECT_EQ(result.errors[0], "blob: An item with the same name already exists.");
    EXPECT_EQ(std::filesystem::file_size(tree / "cache/taken/blob"), 7u);
    EXPECT_TRUE(presentAt(removed.items[1].trashURL));
    EXPECT_TRUE(presentAt(removed.items[2].trashURL));
    EXPECT_TRUE(presentAt(tree / "cache/back/blob"));
    EXPECT_FALSE(presentAt(removed.items[0].trashURL));

    const auto nothing = AIStorageCleanup::restore({});
    EXPECT_EQ(nothing.restored, 0);
    EXPECT_THAT(nothing.remaining, IsEmpty());
    EXPECT_THAT(nothing.errors, IsEmpty());
}

TEST_F(CleanupFixture, UndoGoesOnWhenTheDesktopAlreadyRestoredOrEmptied) {
    const Date old = currentDate() - 3 * day;
    for (const char* name : {"restored", "emptied", "kept"}) {
        tree.file(std::string("cache/") + name + "/blob", 100, old);
    }
    std::vector<StorageCleanupFile> files;
    for (const char* name : {"restored", "emptied", "kept"}) {
        const auto found = scanned(std::string("cache/") + name, "Cache").cleanupFiles;
        files.insert(files.end(), found.begin(), found.end());
    }
    const auto removed = AIStorageCleanup::moveToTrash(files);
    ASSERT_EQ(removed.items.size(), 3u) << ::testing::PrintToString(removed.errors);

    // What the desktop's Trash does: put an item back and drop its record; delete for good.
    const auto infoOf = [](const std::filesystem::path& trashed) {
        return trashed.parent_path().parent_path() / "info" /
               (trashed.filename().native() + ".trashinfo");
    };
    std::filesystem::rename(removed.items[0].trashURL, tree / "cache/restored/blob");
    std::filesystem::remove(infoOf(removed.items[0].trashURL));
    std::filesystem::remove(removed.items[1].trashURL);
    std::filesystem::remove(infoOf(removed.items[1].trashURL));
    tree.file("cache/restored/blob.edited", 1);

    const auto result = AIStorageCleanup::restore(removed.items);
    EXPECT_EQ(result.restored, 1);
    EXPECT_THAT(result.errors, ElementsAre("blob: It is no longer in the Trash.",
                                           "blob: It is no longer in the Trash."));
    EXPECT_THAT(result.remaining, IsEmpty());
    EXPECT_TRUE(presentAt(tree / "cache/kept/blob"));
    EXPECT_TRUE(presentAt(tree / "cache/restored/blob"));
    EXPECT_FALSE(presentAt(tree / "cache/emptied/blob"));
}

TEST_F(CleanupFixture, RestoresOnlyFromATrashToThePlaceItsRecordNames) {
    const Date old = currentDate() - 3 * day;
    tree.file("cache/blob", 100, old);
    const auto secret = tree.file("documents/secret.txt", 5);
    const auto removed = AIStorageCleanup::moveToTrash(scanned("cache", "Cache").cleanupFiles);
    ASSERT_EQ(removed.items.size(), 1u);
    const auto& trashed = removed.items[0];

    // Undo records edited by hand: any file as the "trashed" item, or a trashed item sent
    // somewhere else than where it came from.
    auto anyFile = trashed;
    anyFile.trashURL = secret;
    anyFile.original.url = tree / "documents/moved.txt";
    auto elsewhere = trashed;
    elsewhere.original.url = tree / "autostart/blob";
    tree.folder("autostart");
    auto notStandard = trashed;
    notStandard.trashURL = tree / "data/Trash/files/../files/blob";
    const auto result = AIStorageCleanup::restore({anyFile, elsewhere, notStandard});
    EXPECT_EQ(result.restored, 0);
    EXPECT_THAT(
        result.errors,
        ElementsAre("moved.txt: It is not in a trash’s files folder, so it is not restored from "
                    "there.",
                    "blob: Its trash record does not name this place as where it came from, so "
                    "it is not restored there.",
                    "blob: Its undo record names a path that is not absolute and standardised, "
                    "so it was not used."));
    EXPECT_TRUE(presentAt(secret));
    EXPECT_FALSE(presentAt(tree / "documents/moved.txt"));
    EXPECT_TRUE(std::filesystem::is_empty(tree / "autostart"));
    EXPECT_TRUE(presentAt(trashed.trashURL));

    EXPECT_EQ(AIStorageCleanup::restore({trashed}).restored, 1);
    EXPECT_TRUE(presentAt(tree / "cache/blob"));
}

}  // namespace
}  // namespace tallowmere
