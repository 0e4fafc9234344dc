#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "ScopedVariable.h"
#include "TemporaryTree.h"
#include "removal/FileCleanup.h"
#include "removal/LocationRemovalReview.h"
#include "removal/RemovalErrors.h"
#include "removal/RemovalMessages.h"
#include "removal/StorageLocationTrash.h"

namespace tallowmere {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::presentAt;
using testing::ScopedVariable;
using testing::TemporaryTree;

const std::string changed = FileTrashError().what();

struct LocationRemovalFixture : ::testing::Test {
    TemporaryTree tree;
    ScopedVariable home{"HOME", (tree / "home").native()};
    ScopedVariable dataHome{"XDG_DATA_HOME", (tree / "home/.local/share").native()};

    StorageLocationSnapshot snapshotOf(const std::string& folder) const {
        ScanOptions options;
        options.pauses = false;
        return StorageLocationTrash::snapshot(tree / folder, "Agent data", "detail", 100000,
                                              options);
    }
};

TEST_F(LocationRemovalFixture, RemovesOnlyUnchangedOutermostFolders) {
    tree.file("home/.x/y/file", 10);
    tree.file("home/.grew/file", 10);
    tree.file("home/.same/file", 10);
    const auto outer = snapshotOf("home/.x");
    const auto inner = snapshotOf("home/.x/y");
    const auto grew = snapshotOf("home/.grew");
    const auto same = snapshotOf("home/.same");
    tree.file("home/.grew/new", 0);

    const auto result = StorageLocationTrash::moveToTrash({inner, outer, grew, same, same});
    EXPECT_EQ(result.moved, 2);
    EXPECT_THAT(result.errors, ElementsAre(".grew: " + changed));
    ASSERT_EQ(result.items.size(), 2u);
    EXPECT_EQ(result.items[0].original,
              (FileEntry{outer.url, 0, outer.modified, FileIdentity::parse(outer.fileIdentity)}));
    EXPECT_EQ(result.items[0].locationSnapshot, outer);
    EXPECT_TRUE(presentAt(result.items[0].trashURL / "y/file"));
    EXPECT_TRUE(presentAt(tree / "home/.grew/new"));

    // Back in place, unchanged; a folder changed inside the Trash stays there.
    tree.file(result.items[1].trashURL.native() + "/extra", 1);
    const auto restored = AIStorageCleanup::restore(result.items);
    EXPECT_EQ(restored.restored, 1);
    EXPECT_THAT(restored.errors, ElementsAre(".same: " + changed));
    EXPECT_TRUE(presentAt(tree / "home/.x/y/file"));
    EXPECT_EQ(snapshotOf("home/.x").fingerprint, outer.fingerprint);
}

TEST_F(LocationRemovalFixture, DeletesPermanentlyWithoutUndo) {
    tree.file("home/.tool/a/b", 10);
    // A file under two names inside the folder, as package stores keep them: deleting the
    // first name must not make the second look changed.
    tree.hardLink("home/.tool/a/b", "home/.tool/c/b-again");
    const auto result =
        StorageLocationTrash::remove({snapshotOf("home/.tool")}, StorageRemovalMethod::permanent);
    EXPECT_EQ(result.moved, 1);
    EXPECT_THAT(result.items, IsEmpty());
    EXPECT_THAT(result.errors, IsEmpty());
    EXPECT_FALSE(presentAt(tree / "home/.tool"));
}

TEST_F(LocationRemovalFixture, HandlesFoldersOfOneHundredThousandItems) {
    // 100 folders of 999 files: 100,000 items below the top folder.
    const auto top = tree.folder("home/.big");
    for (int folder = 0; folder < 100; ++folder) {
        const auto path = top / std::to_string(folder);
        std::filesystem::create_directory(path);
        for (int file = 0; file < 999; ++file) {
            std::ofstream(path / std::to_string(file));
        }
    }
    ScanOptions options;
    options.pauses = false;
    const auto snapshot = StorageLocationTrash::snapshot(top, "Cache", "", 100000, options);
    EXPECT_EQ(snapshot.itemCount, 100000);
    EXPECT_THROW(StorageLocationTrash::snapshot(top, "Cache", "", 99999, options), ReviewError);

    RemovalOptions removal;
    removal.pauses = false;
    const auto result =
        StorageLocationTrash::remove({snapshot}, StorageRemovalMethod::permanent, removal);
    EXPECT_EQ(result.moved, 1);
    EXPECT_THAT(result.errors, IsEmpty());
    EXPECT_FALSE(presentAt(top));
}

StorageFinding findingAt(const std::filesystem::path& url, const std::string& owner) {
    StorageFinding finding;
    finding.location = {owner, "Editor data", url.native(), ""};
    finding.url = url;
    finding.allocatedBytes = 1;
    return finding;
}

TEST_F(LocationRemovalFixture, PreparesReviewsOfOneToolAndNamesTheOthersInside) {
    tree.file("home/.editor/User/globalStorage/ext/file", 10);
    tree.file("home/.editor2/file", 10);
    const auto editor = findingAt(tree / "home/.editor", "Cursor");
    const std::vector<StorageTool> tools = {
        {"Cursor", {editor}},
        {"Cline", {findingAt(tree / "home/.editor/User/globalStorage/ext", "Cline")}},
        {"Amp", {findingAt(tree / "home/.editor2", "Amp")}}};

    const auto review = LocationRemovalReview::prepare(tools, "Cursor", {editor.id()}, false);
    ASSERT_TRUE(review);
    EXPECT_EQ(review->owner, "Cursor");
    EXPECT_THAT(review->affectedTools, ElementsAre("Cline"));
    ASSERT_EQ(review->locations.size(), 1u);
    EXPECT_EQ(review->locations[0].itemCount, 4);
    EXPECT_EQ(review->selectionSummary(), "1 whole folder");
    EXPECT_EQ(review->id.size(), 36u);
    EXPECT_NE(review->id,
              LocationRemovalReview::prepare(tools, "Cursor", {editor.id()}, false)->id);

    EXPECT_FALSE(LocationRemovalReview::prepare(tools, "Nobody", {editor.id()}, false));
    EXPECT_FALSE(LocationRemovalReview::prepare(tools, "Cursor", {"/elsewhere"}, false));
    EXPECT_THROW(LocationRemovalReview::prepare({{"Tool", {findingAt(tree / "home", "Tool")}}},
                                                "Tool", {(tree / "home").native()}, false),
                 ReviewError);
}

TEST(RemovalMessages, ComposeNoticesAndAlerts) {
    StorageCleanupResult result{3, {}, {"a: x", "b: y", "c: z", "d: w"}};
    EXPECT_EQ(RemovalMessages::removalNotice(result, StorageRemovalMethod::trash),
              "Moved 3 items to Trash.");
    EXPECT_EQ(RemovalMessages::removalNotice({1, {}, {}}, StorageRemovalMethod::permanent),
              "Permanently deleted 1 item. No Undo.");
    EXPECT_FALSE(RemovalMessages::removalNotice({0, {}, {"a: x"}}, StorageRemovalMethod::trash));
    EXPECT_EQ(RemovalMessages::removalError(result, StorageRemovalMethod::trash),
              "4 items couldn’t be fully removed. Changed or unavailable folders were left in "
              "place.\n\na: x\nb: y\nc: z");
    EXPECT_EQ(RemovalMessages::removalError({0, {}, {"a: x"}}, StorageRemovalMethod::permanent),
              "1 items couldn’t be fully removed. Changed folders were skipped. Filesystem errors "
              "may leave "
              "partly removed folders; scan again to check.\n\na: x");
    EXPECT_EQ(RemovalMessages::restoreNotice({1, {}, {}}),
              "Restored 1 item to the original location.");
    EXPECT_EQ(RemovalMessages::restoreNotice({2, {}, {}}),
              "Restored 2 items to the original locations.");
    EXPECT_EQ(
        RemovalMessages::restoreError({0, {}, {"a: x"}}),
        "Some items couldn’t be restored. Existing files and folders weren’t overwritten; you can "
        "review the remaining items in Trash.\n\na: x");
    EXPECT_EQ(RemovalMessages::preparationFailed("Why."),
              "Couldn’t prepare these locations for removal. Nothing was moved.\n\nWhy.");

    LocationRemovalReview review;
    EXPECT_EQ(review.selectionSummary(), "");
    review.files.resize(1);
    review.files[0].allocatedBytes = 5;
    review.locations.resize(2);
    review.locations[1].allocatedBytes = 7;
    EXPECT_EQ(review.selectionSummary(), "1 cache/log file · 2 whole folders");
    EXPECT_EQ(review.allocatedBytes(), 12);
}

}  // namespace
}  // namespace tallowmere
