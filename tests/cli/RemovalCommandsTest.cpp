#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "CliRunner.h"
#include "TemporaryTree.h"
#include "platform/LockedFile.h"
#include "text/Sha256.h"

namespace tallowmere {
namespace {

using Json = nlohmann::ordered_json;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::presentAt;
using testing::runCli;
using testing::TemporaryTree;

constexpr Date day = 86400;

std::vector<std::string> keysOf(const Json& object) {
    std::vector<std::string> keys;
    for (const auto& item : object.items()) {
        keys.push_back(item.key());
    }
    return keys;
}

// A home with Codex sessions (a whole folder) and an old Codex log (a single file).
struct RemovalCommands : ::testing::Test {
    TemporaryTree home;
    std::string review = (home / "review.json").native();

    void SetUp() override {
        home.file(".codex/sessions/s1.json", 300);
        home.file(".codex/log/old.log", 5000, currentDate() - 20 * day);
        home.file(".codex/log/new.log", 5000);
    }

    testing::CliRun reviewAll(const std::vector<std::string>& extra = {}) {
        std::vector<std::string> arguments = {"review", "--tool", "Codex",     "--all",
                                              "--out",  review,   "--no-pause"};
        arguments.insert(arguments.end(), extra.begin(), extra.end());
        return runCli(arguments, home.root());
    }
};

TEST_F(RemovalCommands, ReviewRemoveAndRestoreRoundTrip) {
    const auto prepared = reviewAll({"--json"});
    ASSERT_EQ(prepared.exitCode, 0) << prepared.err;
    const Json shown = Json::parse(prepared.out);
    EXPECT_THAT(keysOf(shown),
                ElementsAre("version", "id", "owner", "layout", "locations", "affectedTools",
                            "files", "checksum", "selectionSummary", "allocatedBytes"));
    EXPECT_EQ(shown["selectionSummary"], "1 cache/log file · 1 whole folder");
    EXPECT_THAT(keysOf(shown["locations"][0]),
                ElementsAre("path", "category", "detail", "allocatedBytes", "itemCount", "modified",
                            "fileIdentity", "fingerprint", "changeFingerprint"));
    EXPECT_EQ(shown["files"][0]["path"], (home / ".codex/log/old.log").native());

    const auto removed = runCli({"remove", review, "--json"}, home.root());
    ASSERT_EQ(removed.exitCode, 0) << removed.err;
    const Json result = Json::parse(removed.out);
    EXPECT_THAT(keysOf(result), ElementsAre("moved", "items", "errors", "notice", "error"));
    EXPECT_EQ(result["moved"], 2);
    EXPECT_EQ(result["notice"], "Moved 2 items to Trash.");
    EXPECT_TRUE(result["error"].is_null());
    EXPECT_FALSE(presentAt(home / ".codex/sessions"));
    EXPECT_FALSE(presentAt(home / ".codex/log/old.log"));
    EXPECT_TRUE(presentAt(home / ".codex/log/new.log"));
    EXPECT_TRUE(presentAt(home / ".local/share/Trash/info/sessions.trashinfo"));

    const auto again = runCli({"remove", review}, home.root());
    EXPECT_EQ(again.exitCode, 1);
    EXPECT_THAT(again.err, HasSubstr("2 items couldn’t be fully removed."));
    EXPECT_EQ(again.out, "");

    const auto restored = runCli({"restore", review + ".undo.json"}, home.root());
    ASSERT_EQ(restored.exitCode, 0) << restored.err;
    EXPECT_EQ(restored.out, "Restored 2 items to the original locations.\n");
    EXPECT_TRUE(presentAt(home / ".codex/sessions/s1.json"));
    EXPECT_TRUE(presentAt(home / ".codex/log/old.log"));
    const auto nothingLeft = runCli({"restore", review + ".undo.json", "--json"}, home.root());
    EXPECT_EQ(Json::parse(nothingLeft.out)["restored"], 0);
}

TEST_F(RemovalCommands, TellsWhatATrashMoveCostsAndEscapesNames) {
    const auto hostile = home / ".codex/log/old\x1b[31m.log";
    home.file(hostile.lexically_relative(home.root()).native(), 4000, currentDate() - 20 * day);
    const auto logs = (home / ".codex/log").native();
    ASSERT_EQ(runCli({"review", "--tool", "Codex", "--select", logs, "--out", review}, home.root())
                  .exitCode,
              0);
    const auto removed = runCli({"remove", review}, home.root());
    ASSERT_EQ(removed.exitCode, 0) << removed.err;
    const auto undo = review + ".undo.json";
    EXPECT_EQ(removed.out,
              "Moved 2 items to Trash.\n"
              "They hold 9 KB, which stays in use until the Trash is emptied.\n"
              "Undo file: " +
                  undo +
                  "\n"
                  "Put back:        tallowmere-cli restore " +
                  undo +
                  "\n"
                  "Free the space:  tallowmere-cli empty-trash " +
                  undo + "\n");

    home.file(hostile.lexically_relative(home.root()).native(), 1);
    const auto restored = runCli({"restore", undo}, home.root());
    EXPECT_EQ(restored.exitCode, 1);
    EXPECT_THAT(restored.err,
                HasSubstr("old\\x1B[31m.log: An item with the same name already exists."));
    EXPECT_EQ(restored.err.find('\x1b'), std::string::npos);
}

TEST_F(RemovalCommands, EmptyTrashDeletesOnlyWhatTheUndoFileMoved) {
    ASSERT_EQ(reviewAll().exitCode, 0);
    const auto undo = review + ".undo.json";
    ASSERT_EQ(runCli({"remove", review}, home.root()).exitCode, 0);
    // Something else the person trashed, under a name the removal's items could have had.
    home.file(".local/share/Trash/files/sessions.2/keep", 7);
    home.file(".local/share/Trash/info/sessions.2.trashinfo", 40);

    const auto unconfirmed = runCli({"empty-trash", undo}, home.root());
    EXPECT_EQ(unconfirmed.exitCode, 1);
    EXPECT_THAT(unconfirmed.err, HasSubstr("--yes"));
    EXPECT_TRUE(presentAt(home / ".local/share/Trash/files/sessions/s1.json"));

    const auto emptied = runCli({"empty-trash", undo, "--yes", "--json"}, home.root());
    ASSERT_EQ(emptied.exitCode, 0) << emptied.err;
    const Json result = Json::parse(emptied.out);
    EXPECT_THAT(keysOf(result),
                ElementsAre("deleted", "bytesFreed", "remaining", "errors", "notice", "error"));
    EXPECT_EQ(result["deleted"], 2);
    EXPECT_GT(result["bytesFreed"].get<std::int64_t>(), 0);
    EXPECT_THAT(result["notice"].get<std::string>(),
                ::testing::StartsWith("Deleted 2 items from the Trash for good, freeing "));
    EXPECT_FALSE(presentAt(home / ".local/share/Trash/files/sessions"));
    EXPECT_FALSE(presentAt(home / ".local/share/Trash/files/old.log"));
    EXPECT_FALSE(presentAt(home / ".local/share/Trash/info/sessions.trashinfo"));
    EXPECT_TRUE(presentAt(home / ".local/share/Trash/files/sessions.2/keep"));
    EXPECT_TRUE(presentAt(home / ".local/share/Trash/info/sessions.2.trashinfo"));

    const auto again = runCli({"restore", undo, "--json"}, home.root());
    EXPECT_EQ(Json::parse(again.out)["restored"], 0);
    EXPECT_EQ(runCli({"empty-trash", undo, "--yes"}, home.root()).err,
              "The undo file holds no items, so nothing was deleted.\n");
}

TEST_F(RemovalCommands, RefusesDamagedFilesAndUnconfirmedDeletion) {
    ASSERT_EQ(reviewAll().exitCode, 0);
    std::string text;
    {
        std::ifstream in(review);
        std::getline(in, text);
    }
    const auto edited = home / "edited.json";
    std::ofstream(edited) << std::string(text).replace(text.find("Codex"), 5, "Cline") << '\n';
    const auto refused = runCli({"remove", edited.native()}, home.root());
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_THAT(refused.err, HasSubstr("checksum does not match"));
    std::ofstream(edited) << text.substr(0, text.size() / 2);
    EXPECT_EQ(runCli({"remove", edited.native()}, home.root()).exitCode, 1);

    const auto unconfirmed = runCli({"remove", review, "--permanent"}, home.root());
    EXPECT_EQ(unconfirmed.exitCode, 1);
    EXPECT_THAT(unconfirmed.err, HasSubstr("--yes"));
    EXPECT_TRUE(presentAt(home / ".codex/sessions/s1.json"));

    const auto deleted = runCli({"remove", review, "--permanent", "--yes"}, home.root());
    ASSERT_EQ(deleted.exitCode, 0) << deleted.err;
    EXPECT_EQ(deleted.out, "Permanently deleted 2 items. No Undo.\n");
    EXPECT_FALSE(presentAt(home / ".codex/sessions"));
    EXPECT_FALSE(presentAt(review + ".undo.json"));
}

// `text` (a review or undo file) with `from` replaced by `to` and the checksum made anew, as
// anyone who edits such a file can do.
std::string forged(std::string text, const std::string& from, const std::string& to) {
    text.replace(text.find(from), from.size(), to);
    const auto checksum = text.rfind(",\"checksum\":\"");
    const std::string body = text.substr(0, checksum) + "}";
    return text.substr(0, checksum) + ",\"checksum\":\"" + Sha256::hexDigestOf(body) + "\"}\n";
}

std::string contentOf(const std::filesystem::path& file) {
    std::ifstream in(file);
    return {std::istreambuf_iterator<char>(in), {}};
}

TEST_F(RemovalCommands, ReviewsAreSelectionsThatCannotReachBeyondTheTool) {
    ASSERT_EQ(reviewAll().exitCode, 0);
    home.file(".ssh/id_ed25519", 400);
    const auto text = contentOf(review);
    const auto sessions = (home / ".codex/sessions").native();

    const auto edited = (home / "edited.json").native();
    std::ofstream(edited) << forged(text, "\"" + sessions + "\"",
                                    "\"" + (home / ".ssh").native() + "\"");
    const auto refused = runCli({"remove", edited, "--permanent", "--yes"}, home.root());
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_THAT(refused.err, HasSubstr(".ssh: It is not a storage location of Codex, nor inside "
                                       "one, so it was left in place."));
    EXPECT_TRUE(presentAt(home / ".ssh/id_ed25519"));

    std::ofstream(edited) << forged(text, "\"" + sessions + "\"", "\"" + sessions + "/\"");
    const auto unusual = runCli({"remove", edited}, home.root());
    EXPECT_EQ(unusual.exitCode, 1);
    EXPECT_THAT(unusual.err, HasSubstr("” in it is not absolute and standardised."));
    EXPECT_TRUE(presentAt(home / ".codex/sessions/s1.json"));

    // A tracked folder is the tool's only while it is tracked.
    const auto tracked = home.file("project/.venv/lib/a", 10).parent_path().parent_path();
    const auto trackedReview = (home / "tracked.json").native();
    ASSERT_EQ(runCli({"review", "--tool", ".venv", "--all", "--out", trackedReview, "--track",
                      tracked.native()},
                     home.root())
                  .exitCode,
              0);
    const auto untracked = runCli({"remove", trackedReview}, home.root());
    EXPECT_EQ(untracked.exitCode, 1);
    EXPECT_THAT(untracked.err, HasSubstr("“.venv” has no storage locations here. If it is a "
                                         "tracked folder, give it again with --track."));
    EXPECT_THAT(untracked.err, HasSubstr(".venv: It is not a storage location of .venv"));
    EXPECT_TRUE(presentAt(tracked));
    const auto removed =
        runCli({"remove", trackedReview, "--track", tracked.native()}, home.root());
    EXPECT_EQ(removed.exitCode, 0) << removed.err;
    EXPECT_FALSE(presentAt(tracked));

    // --out never costs the user a file that is not a review.
    const auto notes = home.file("notes.txt", 3);
    const auto overwrite =
        runCli({"review", "--tool", "Codex", "--all", "--out", notes.native()}, home.root());
    EXPECT_EQ(overwrite.exitCode, 1);
    EXPECT_THAT(overwrite.err, HasSubstr("exists and is not a review of tallowmere-cli"));
    EXPECT_EQ(contentOf(notes), "xxx");
}

// The identity a review holds for a file is what removal checks the file against: edited to
// nonsense or to another file's, it must not pass for no identity or for the file's own.
TEST_F(RemovalCommands, AFileWhoseRecordWasEditedIsLeftInPlace) {
    ASSERT_EQ(reviewAll().exitCode, 0);
    const auto text = contentOf(review);
    const std::string identity = Json::parse(text)["files"][0]["fileIdentity"];
    int round = 0;
    for (const std::string& edit : {std::string("garbage"), std::string("1:2"), identity + "0",
                                    std::string(""), ":" + identity}) {
        const auto edited = (home / ("edited" + std::to_string(++round) + ".json")).native();
        std::ofstream(edited) << forged(text, "\"" + identity + "\"", "\"" + edit + "\"");
        const auto refused = runCli({"remove", edited}, home.root());
        EXPECT_EQ(refused.exitCode, 1) << edit;
        EXPECT_TRUE(presentAt(home / ".codex/log/old.log")) << edit;
    }
    // Nor does a category the file's location does not have, or none that files are cleaned in.
    for (const std::string edit : {"Cache", "logs", "Agent data"}) {
        const auto edited = (home / ("edited" + std::to_string(++round) + ".json")).native();
        std::ofstream(edited) << forged(text, "\"category\":\"Logs\"",
                                        "\"category\":\"" + edit + "\"");
        EXPECT_EQ(runCli({"remove", edited}, home.root()).exitCode, 1) << edit;
        EXPECT_TRUE(presentAt(home / ".codex/log/old.log")) << edit;
    }
}

TEST_F(RemovalCommands, NeverLosesOrReplacesAnUndoRecord) {
    const auto sessions = (home / ".codex/sessions").native();
    const auto logs = (home / ".codex/log").native();
    const auto undo = (home / "undo.json").native();
    ASSERT_EQ(
        runCli({"review", "--tool", "Codex", "--select", sessions, "--out", review}, home.root())
            .exitCode,
        0);

    // Nothing moves when the undo file cannot be ours or cannot be written.
    const auto notes = home.file("notes.txt", 3);
    const auto unrelated = runCli({"remove", review, "--undo", notes.native()}, home.root());
    EXPECT_EQ(unrelated.exitCode, 1);
    EXPECT_THAT(unrelated.err, HasSubstr("it has no checksum"));
    EXPECT_EQ(contentOf(notes), "xxx");
    const auto nowhere =
        runCli({"remove", review, "--undo", (home / "missing/undo.json").native()}, home.root());
    EXPECT_EQ(nowhere.exitCode, 1);
    {
        // Another command holding the undo file.
        const auto held = LockedFile::open(undo);
        ASSERT_TRUE(held);
        const auto busy = runCli({"remove", review, "--undo", undo}, home.root());
        EXPECT_EQ(busy.exitCode, 1);
        EXPECT_THAT(busy.err, HasSubstr("Another tallowmere-cli command is using the undo file"));
    }
    EXPECT_TRUE(presentAt(home / ".codex/sessions/s1.json"));

    // A later removal adds to the records of an earlier one.
    ASSERT_EQ(runCli({"remove", review, "--undo", undo}, home.root()).exitCode, 0);
    const auto second = (home / "second.json").native();
    ASSERT_EQ(runCli({"review", "--tool", "Codex", "--select", logs, "--out", second}, home.root())
                  .exitCode,
              0);
    ASSERT_EQ(runCli({"remove", second, "--undo", undo}, home.root()).exitCode, 0);
    const auto restored = runCli({"restore", undo}, home.root());
    EXPECT_EQ(restored.exitCode, 0) << restored.err;
    EXPECT_EQ(restored.out, "Restored 2 items to the original locations.\n");
    EXPECT_TRUE(presentAt(home / ".codex/sessions/s1.json"));
    EXPECT_TRUE(presentAt(home / ".codex/log/old.log"));
}

TEST_F(RemovalCommands, ExplainsWhyNothingCanBeReviewed) {
    const auto unknown =
        runCli({"review", "--tool", "Nobody", "--all", "--out", review}, home.root());
    EXPECT_EQ(unknown.exitCode, 1);
    EXPECT_EQ(unknown.err,
              "tallowmere-cli: No tool is named “Nobody”. Tools with folders here: Codex.\n");

    const auto elsewhere = runCli(
        {"review", "--tool", "Codex", "--select", (home / "elsewhere").native(), "--out", review},
        home.root());
    EXPECT_EQ(elsewhere.exitCode, 1);
    EXPECT_EQ(elsewhere.err,
              "tallowmere-cli: ~/elsewhere is not a location of Codex; its locations are: "
              "~/.codex/log, ~/.codex/sessions.\n");
    const auto noFolder = runCli(
        {"review", "--tool", "Codex", "--all", "--out", (home / "missing/review.json").native()},
        home.root());
    EXPECT_EQ(noFolder.exitCode, 1);
    EXPECT_THAT(noFolder.err, HasSubstr("does not exist, so the review cannot be written there"));
    EXPECT_FALSE(presentAt(home / "missing"));
    EXPECT_FALSE(presentAt(review));

    // Names as a person types them: any case, and a home folder the shell did not expand.
    const auto typed = runCli(
        {"review", "--tool", "codex", "--select=~/.codex/log", "--out", review}, home.root());
    EXPECT_EQ(typed.exitCode, 0) << typed.err;
    EXPECT_TRUE(presentAt(review));

    home.file("tracked/a", 10);
    const auto broad = runCli({"review", "--tool", home.root().filename().native(), "--all",
                               "--out", review, "--track", home.root().native()},
                              home.root());
    EXPECT_EQ(broad.exitCode, 1);
    EXPECT_THAT(
        broad.err,
        HasSubstr("Couldn’t prepare these locations for removal. Nothing was moved.\n\n"
                  "Choose a tool’s storage folder rather than a home, system or volume folder."));

    for (const auto& arguments :
         std::vector<std::vector<std::string>>{{"review", "--tool", "Codex", "--all"},
                                               {"review", "--tool", "Codex", "--out", review},
                                               {"remove"},
                                               {"restore"}}) {
        EXPECT_EQ(runCli(arguments, home.root()).exitCode, 2)
            << ::testing::PrintToString(arguments);
    }
}

}  // namespace
}  // namespace tallowmere
