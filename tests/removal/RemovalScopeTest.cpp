#include "removal/RemovalScope.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "ScopedVariable.h"
#include "TemporaryTree.h"
#include "catalog/CustomFolder.h"
#include "removal/FileCleanup.h"
#include "removal/LocationRemovalReview.h"
#include "removal/RemovalErrors.h"

// A review read back from a file is a selection, not a permission: whatever it names, only
// what the scope derives afresh may go.

namespace tallowmere {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Optional;
using testing::presentAt;
using testing::ScopedVariable;
using testing::TemporaryTree;

constexpr Date day = 86400;
const std::string changed = FileTrashError().what();
const std::string broad = ReviewError::description(ReviewError::Kind::broadLocation);
const std::string outside =
    "It is not a storage location of Codex, nor inside one, so it was "
    "left in place.";
const std::string notCacheOrLog =
    "It is not inside a cache or log location of Codex, so it was left in place.";
const std::string notStandard =
    "Its path is not absolute and standardised, so the review was not used for it.";

struct RemovalScopeTest : ::testing::Test {
    TemporaryTree tree;
    fs::path home = tree.folder("home");
    ScopedVariable homeVariable{"HOME", home.native()};
    ScopedVariable dataHome{"XDG_DATA_HOME", std::nullopt};
    ScopedVariable configHome{"XDG_CONFIG_HOME", std::nullopt};
    const std::vector<StorageLocation> measured = {
        {"Codex", "Agent data", ".codex", ""},
        {"Codex", "Logs", ".codex/log", ""},
        {"Cursor", "Cache", ".cursor/cache", ""},
        customFolderLocation(home / "Documents"),
    };
    RemovalScope codex{"Codex", home, measured};

    std::optional<std::string> folderRefusal(const fs::path& folder) const {
        StorageLocationSnapshot snapshot;
        snapshot.url = folder;
        return codex.refusalOfFolder(snapshot);
    }

    StorageCleanupFile logFile(const std::string& relative, Date age) const {
        StorageCleanupFile file;
        file.entry.url = home / relative;
        file.entry.modified = currentDate() - age;
        file.root = home / ".codex/log";
        file.category = CleanupCategory::logs;
        return file;
    }
};

TEST_F(RemovalScopeTest, FoldersMustBeTheOwnersLocationsOrInsideThem) {
    EXPECT_EQ(folderRefusal(home / ".codex"), std::nullopt);
    EXPECT_EQ(folderRefusal(home / ".codex/sessions/old"), std::nullopt);

    for (const auto& forged : {home / ".cursor/cache", home / ".ssh", fs::path("/var/log"),
                               home / "Documents", home / ".codexes", home}) {
        EXPECT_THAT(folderRefusal(forged), Optional(outside)) << forged;
    }
    for (const auto* forged : {"/home/x/.codex/", "/home/x/.codex/../.ssh", ".codex",
                               "/home//x/.codex", "/home/x/./.codex"}) {
        EXPECT_THAT(folderRefusal(forged), Optional(notStandard)) << forged;
    }
    // A tracked folder that is one of the user's own folders is measured, never removed.
    StorageLocationSnapshot documents;
    documents.url = home / "Documents";
    EXPECT_THAT(RemovalScope("Documents", home, measured).refusalOfFolder(documents),
                Optional(broad));
}

TEST_F(RemovalScopeTest, FilesMustBeEligibleInACacheOrLogLocationOfTheOwner) {
    EXPECT_EQ(codex.refusalOfFile(logFile(".codex/log/old.log", 20 * day), currentDate()),
              std::nullopt);
    EXPECT_THAT(codex.refusalOfFile(logFile(".codex/log/new.log", day), currentDate()),
                Optional(changed));
    auto recent = logFile(".codex/log/new.log", day);
    recent.includesRecent = true;
    EXPECT_EQ(codex.refusalOfFile(recent, currentDate()), std::nullopt);

    // "Include recent" lifts the age limits only, never the rules on names.
    auto notALog = logFile(".codex/log/notes.txt", day);
    notALog.includesRecent = true;
    EXPECT_THAT(codex.refusalOfFile(notALog, currentDate()), Optional(changed));
    auto key = logFile(".codex/log/auth.log", 20 * day);
    EXPECT_THAT(codex.refusalOfFile(key, currentDate()), Optional(changed));

    auto sshKey = logFile(".ssh/id_ed25519.log", 20 * day);
    EXPECT_THAT(codex.refusalOfFile(sshKey, currentDate()), Optional(notCacheOrLog));
    sshKey.root = home / ".ssh";
    EXPECT_THAT(codex.refusalOfFile(sshKey, currentDate()), Optional(notCacheOrLog));
    auto otherCategory = logFile(".codex/log/old.log", 20 * day);
    otherCategory.category = CleanupCategory::cache;
    EXPECT_THAT(codex.refusalOfFile(otherCategory, currentDate()), Optional(notCacheOrLog));
    auto wholeData = logFile(".codex/sessions/s.log", 20 * day);
    wholeData.root = home / ".codex";
    EXPECT_THAT(codex.refusalOfFile(wholeData, currentDate()), Optional(notCacheOrLog));
    auto climbing = logFile(".codex/log/../../.ssh/x.log", 20 * day);
    EXPECT_THAT(codex.refusalOfFile(climbing, currentDate()), Optional(notStandard));
}

TEST_F(RemovalScopeTest, AForgedReviewRemovesNothingItDoesNotDerive) {
    const Date old = currentDate() - 20 * day;
    tree.file("home/.ssh/id_ed25519.log", 10, old);
    tree.file("home/.codex/log/folder.log/inside", 10, old);
    testing::setModified(home / ".codex/log/folder.log", old);
    tree.file("home/Documents/notes", 10, old);

    LocationRemovalReview review;
    review.owner = "Codex";
    auto key = logFile(".ssh/id_ed25519.log", 20 * day);
    key.entry.modified = old;
    key.entry.bytes = 10;
    key.root = home / ".ssh";
    // A folder dressed as a file of the log location: right name, date and place.
    auto folder = logFile(".codex/log/folder.log", 20 * day);
    folder.entry.modified = old;
    struct stat status {};
    ::lstat((home / ".codex/log/folder.log").c_str(), &status);
    folder.entry.bytes = status.st_size;
    review.files = {key, folder};
    StorageLocationSnapshot documents;
    documents.url = home / "Documents";
    review.locations = {documents};

    RemovalOptions options;
    options.pauses = false;
    const auto result = removeReviewed(review, StorageRemovalMethod::permanent, codex, options);
    EXPECT_EQ(result.moved, 0);
    EXPECT_THAT(result.errors,
                ElementsAre("Documents: " + outside, "id_ed25519.log: " + notCacheOrLog,
                            "folder.log: " + changed));
    EXPECT_TRUE(presentAt(home / ".ssh/id_ed25519.log"));
    EXPECT_TRUE(presentAt(home / ".codex/log/folder.log/inside"));
    EXPECT_TRUE(presentAt(home / "Documents/notes"));
}

}  // namespace
}  // namespace tallowmere
