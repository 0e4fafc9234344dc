#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>
#include <fstream>

#include <nlohmann/json.hpp>

#include "CliRunner.h"
#include "TemporaryTree.h"
#include "text/JsonText.h"

namespace tallowmere {
namespace {

using Json = nlohmann::ordered_json;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::runCli;
using testing::TemporaryTree;

std::vector<std::string> keysOf(const Json& object) {
    std::vector<std::string> keys;
    for (const auto& item : object.items()) {
        keys.push_back(item.key());
    }
    return keys;
}

Json parsedLine(const std::string& out) {
    EXPECT_TRUE(out.ends_with("}\n"));
    EXPECT_EQ(out.find('\n'), out.size() - 1);
    return Json::parse(out);
}

TEST(CommandLine, CatalogJsonListsLocationsInOrder) {
    TemporaryTree home;
    const auto run = runCli({"catalog", "--json"}, home.root());
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const Json catalog = parsedLine(run.out);
    EXPECT_THAT(keysOf(catalog), ElementsAre("locations", "supportedOwners"));
    ASSERT_EQ(catalog["locations"].size(), 144u);
    const Json& first = catalog["locations"][0];
    EXPECT_THAT(keysOf(first), ElementsAre("owner", "category", "relativePath", "detail"));
    EXPECT_EQ(first["relativePath"], ".hermes/logs");
    EXPECT_EQ(catalog["locations"][3]["detail"],
              "Conversations, subagent output and project memory. Use Claude Code’s retention "
              "settings to manage this history.");
    EXPECT_EQ(catalog["supportedOwners"].size(), 26u);
    EXPECT_EQ(catalog["supportedOwners"][0], "Amp");
}

TEST(CommandLine, ScanJsonFollowsTheContract) {
    TemporaryTree home;
    home.file(".ollama/logs/server.log", 2000, 10.5);
    home.file(".cache/torch/blob", 100);
    home.folder("work/custom");
    home.file("work/custom/notes", 7);

    const auto run = runCli({"scan", "--json", "--no-pause", "--track", "./x/../custom/"},
                            home.root(), testing::inFolder(home / "work"));
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.err, "");
    const Json scan = parsedLine(run.out);
    EXPECT_THAT(keysOf(scan), ElementsAre("home", "completedAt", "absentLocations",
                                          "unreadableLocations", "incomplete", "allocatedBytes",
                                          "findings", "tools", "unreadableFolders"));
    EXPECT_EQ(scan["home"], home.root().native());
    EXPECT_EQ(scan["absentLocations"], 142);
    EXPECT_EQ(scan["unreadableFolders"], Json::array());
    EXPECT_EQ(scan["incomplete"], false);
    ASSERT_EQ(scan["findings"].size(), 3u);

    const Json& logs = scan["findings"][0];
    EXPECT_THAT(keysOf(logs),
                ElementsAre("owner", "category", "relativePath", "detail", "path", "allocatedBytes",
                            "logicalBytes", "fileCount", "skippedCount", "limited", "largestFiles",
                            "oldLogs", "cleanupFiles", "recentCleanupFiles", "guidance",
                            "cleanupFileCount", "cleanupBytes", "recentCleanupFileCount",
                            "recentCleanupBytes", "unreadableEntries"));
    EXPECT_EQ(logs["cleanupFileCount"], 1);
    EXPECT_EQ(logs["recentCleanupFileCount"], 1);
    EXPECT_EQ(logs["unreadableEntries"], Json::array());
    EXPECT_EQ(logs["guidance"].dump(),
              R"({"group":"rebuildable","advice":"Remove if not troubleshooting","consequence":)"
              R"("Removes diagnostic records, including recent logs. Keep these while )"
              R"(troubleshooting; quit the tool before removal.","summary":"Optional · Removes )"
              R"(troubleshooting records"})");
    EXPECT_EQ(logs["path"], (home / ".ollama/logs").native());
    EXPECT_EQ(logs["logicalBytes"], 2000);
    const Json& entry = logs["oldLogs"][0];
    EXPECT_THAT(keysOf(entry), ElementsAre("path", "bytes", "modified", "fileIdentity"));
    EXPECT_EQ(entry["modified"].get<double>(), 10.5);
    EXPECT_TRUE(entry["fileIdentity"].is_string());
    EXPECT_THAT(keysOf(logs["cleanupFiles"][0]),
                ElementsAre("path", "bytes", "modified", "fileIdentity", "root", "category",
                            "allocatedBytes", "includesRecent"));
    EXPECT_EQ(logs["recentCleanupFiles"][0]["includesRecent"], true);

    std::int64_t total = 0;
    for (const auto& finding : scan["findings"]) {
        total += finding["allocatedBytes"].get<std::int64_t>();
    }
    EXPECT_EQ(scan["allocatedBytes"], total);

    const auto custom = std::ranges::find(scan["findings"], "Custom folder",
                                          [](const Json& f) { return f["category"]; });
    ASSERT_NE(custom, scan["findings"].end());
    EXPECT_EQ((*custom)["owner"], "custom");
    EXPECT_EQ((*custom)["relativePath"], (home / "work/custom").native());
    EXPECT_EQ((*custom)["fileCount"], 1);
}

TEST(CommandLine, ScanJsonGroupsFindingsIntoTools) {
    TemporaryTree home;
    home.file(".codex/sessions/a", 9000);
    home.file(".codex/config", 100);
    home.file(".cache/opencode/blob", 50000, 1000);
    home.file(".claude/x", 5);

    const auto run = runCli({"scan", "--json", "--no-pause"}, home.root());
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const Json tools = parsedLine(run.out)["tools"];
    std::vector<std::string> owners;
    for (const auto& tool : tools) {
        owners.push_back(tool["owner"]);
    }
    EXPECT_THAT(owners, ElementsAre("OpenCode", "Codex", "Claude Code"));
    EXPECT_THAT(keysOf(tools[0]), ElementsAre("owner", "allocatedBytes", "fileCount", "incomplete",
                                              "categories", "visibleFindings", "reviewBytes"));
    EXPECT_EQ(tools[0]["reviewBytes"], tools[0]["allocatedBytes"]);
    EXPECT_EQ(tools[1]["categories"].dump(), R"(["Agent data","Sessions"])");
    EXPECT_EQ(tools[1]["visibleFindings"][0], (home / ".codex/sessions").native());
    EXPECT_EQ(tools[1]["fileCount"], 2);
}

TEST(CommandLine, LocationsFollowTheLayoutAndTheEnvironment) {
    TemporaryTree home;
    home.folder(".config/Cursor/User/globalStorage/sourcegraph.cody-ai");
    const auto run = runCli({"locations", "--json", "--layout", "linux"}, home.root());
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const Json listing = parsedLine(run.out);
    EXPECT_THAT(keysOf(listing), ElementsAre("home", "locations"));
    ASSERT_EQ(listing["locations"].size(), 145u);
    EXPECT_THAT(keysOf(listing["locations"][0]),
                ElementsAre("owner", "category", "relativePath", "detail", "path"));
    EXPECT_EQ(listing["locations"][38]["path"], (home / ".config/Cursor").native());
    EXPECT_EQ(listing["locations"][144]["owner"], "Cody");

    const auto mac = runCli({"locations", "--json", "--layout", "macos"}, home.root());
    EXPECT_EQ(parsedLine(mac.out)["locations"][38]["path"],
              (home / "Library/Application Support/Cursor").native());
    EXPECT_EQ(runCli({"locations", "--layout", "windows"}, home.root()).exitCode, 2);
}

TEST(CommandLine, SummaryShowsASavedScanOnlyWhileItApplies) {
    TemporaryTree home;
    home.file(".codex/sessions/a", 9000);
    home.folder("kept");
    const auto file = home / "saved/summary.json";
    const auto scan = runCli({"scan", "--json", "--no-pause", "--track", (home / "kept").native(),
                              "--save-summary", file.native()},
                             home.root());
    ASSERT_EQ(scan.exitCode, 0) << scan.err;

    const auto summary = runCli(
        {"summary", file.native(), "--json", "--track", (home / "kept").native()}, home.root());
    ASSERT_EQ(summary.exitCode, 0) << summary.err;
    const Json saved = parsedLine(scan.out);
    const Json loaded = parsedLine(summary.out);
    EXPECT_EQ(loaded["allocatedBytes"], saved["allocatedBytes"]);
    EXPECT_EQ(loaded["completedAt"], saved["completedAt"]);
    EXPECT_EQ(loaded["findings"][0]["path"], saved["findings"][0]["path"]);
    EXPECT_TRUE(loaded["findings"][0]["largestFiles"].empty());
    EXPECT_EQ(loaded["tools"][0]["owner"], "Codex");

    for (const auto& arguments : std::vector<std::vector<std::string>>{
             {"summary", file.native()}, {"summary", (home / "missing.json").native()}}) {
        const auto refused = runCli(arguments, home.root());
        EXPECT_EQ(refused.exitCode, 1);
        EXPECT_EQ(refused.err, "No usable summary.\n");
        EXPECT_EQ(refused.out, "");
    }
    EXPECT_EQ(runCli({"summary"}, home.root()).exitCode, 2);
}

TEST(CommandLine, NamesSurviveAsBytesInJsonAndAreEscapedInReports) {
    TemporaryTree home;
    const std::string odd = "bad\xff\nname";
    home.file(".claude/" + odd, 500);
    home.file("tracked\x1b[31m/notes", 10);

    const auto json = runCli({"scan", "--json", "--no-pause"}, home.root());
    ASSERT_EQ(json.exitCode, 0) << json.err;
    const std::string quotedPath = JsonText::quoted((home / ".claude" / odd).native());
    EXPECT_THAT(json.out, HasSubstr("\"path\":" + quotedPath));
    EXPECT_THAT(quotedPath, HasSubstr("bad\\udcff\\nname"));

    const auto report =
        runCli({"scan", "--no-pause", "--track", (home / "tracked\x1b[31m").native()}, home.root());
    ASSERT_EQ(report.exitCode, 0) << report.err;
    EXPECT_THAT(report.out, HasSubstr("~/tracked\\x1B[31m"));
    EXPECT_EQ(report.out.find('\x1b'), std::string::npos);
    EXPECT_THAT(report.out, HasSubstr("Claude Code"));
}

TEST(CommandLine, UnreadableLocationsAreNamedWithTheirReason) {
    TemporaryTree home;
    const std::string disk = (home / "disk/h\x1b[31mf\xff").native();
    home.folder("disk/h\x1b[31mf\xff");
    home.symlink(disk, ".cache/huggingface");
    const auto summaryFile = home / "summary.json";

    const auto json = runCli(
        {"scan", "--json", "--no-pause", "--save-summary", summaryFile.native()}, home.root());
    ASSERT_EQ(json.exitCode, 0) << json.err;
    const std::string reason = "It is a symbolic link to " + disk +
                               ", and links are not followed; track that folder to measure it.";
    EXPECT_THAT(json.out, HasSubstr(R"("unreadableFolders":[{"path":)" +
                                    JsonText::quoted((home / ".cache/huggingface").native()) +
                                    R"(,"reason":)" + JsonText::quoted(reason) + "}]}\n"));
    EXPECT_THAT(json.out, HasSubstr(R"("unreadableLocations":1,)"));

    const auto report = runCli({"scan", "--no-pause"}, home.root());
    ASSERT_EQ(report.exitCode, 0) << report.err;
    EXPECT_THAT(report.out, HasSubstr(" · 1 location could not be read:\n"
                                      "  ~/.cache/huggingface — It is a symbolic link to " +
                                      (home / "disk/h\\x1B[31mf\\xFF").native() + ", and links"));
    EXPECT_EQ(report.out.find('\x1b'), std::string::npos);

    // A summary keeps the count alone.
    const auto summary = runCli({"summary", summaryFile.native()}, home.root());
    ASSERT_EQ(summary.exitCode, 0) << summary.err;
    EXPECT_THAT(summary.out, HasSubstr(" · 1 location could not be read\n"));
    const auto summaryJson = runCli({"summary", summaryFile.native(), "--json"}, home.root());
    EXPECT_EQ(parsedLine(summaryJson.out)["unreadableFolders"], Json::array());
}

TEST(CommandLine, LimitedScansAreIncompleteButSucceed) {
    TemporaryTree home;
    for (const char* name : {"a", "b", "c"}) {
        home.file(std::string(".codex/") + name, 10);
    }
    const auto run = runCli({"scan", "--json", "--max-entries", "2", "--no-pause"}, home.root());
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const Json scan = parsedLine(run.out);
    EXPECT_EQ(scan["incomplete"], true);
    EXPECT_EQ(scan["findings"][0]["limited"], true);
    EXPECT_EQ(scan["findings"][0]["fileCount"], 2);

    const auto report = runCli({"scan", "--max-entries=2", "--no-pause"}, home.root());
    EXPECT_THAT(report.out, HasSubstr("partial scan"));
}

TEST(CommandLine, UsageErrorsExitWithTwoAndHelpDescribesEverything) {
    TemporaryTree home;
    for (const auto& arguments :
         std::vector<std::vector<std::string>>{{},
                                               {"frobnicate"},
                                               {"scan", "--bogus"},
                                               {"scan", "--max-entries", "-1"},
                                               {"scan", "--max-entries", "12x"},
                                               {"scan", "--track"},
                                               {"scan", "operand"},
                                               {"catalog", "--json=yes"}}) {
        const auto run = runCli(arguments, home.root());
        EXPECT_EQ(run.exitCode, 2) << ::testing::PrintToString(arguments);
        EXPECT_EQ(run.out, "");
        EXPECT_NE(run.err, "");
    }
    const auto help = runCli({"--help"}, home.root());
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_THAT(help.out, HasSubstr("catalog"));
    const auto scanHelp = runCli({"scan", "--help"}, home.root());
    EXPECT_EQ(scanHelp.exitCode, 0);
    for (const char* option : {"--json", "--track", "--max-entries", "--no-pause"}) {
        EXPECT_THAT(scanHelp.out, HasSubstr(option));
    }
}

TEST(CommandLine, ReportAndReviewAgreeOnWhatOneReviewTakes) {
    TemporaryTree home;
    const Date old = currentDate() - 20 * 86400;
    for (int index = 0; index < 520; ++index) {
        home.file(".cache/opencode/f" + std::to_string(index), 4096, old);
    }
    home.file(".cache/opencode/fresh", 8192);
    home.file(".codex/config.toml", 10);
    home.file(".codex/sessions/s.jsonl", 20000);
    home.file(".codex/log/a.log", 30000);

    const auto report = runCli({"scan"}, home.root());
    ASSERT_EQ(report.exitCode, 0) << report.err;
    EXPECT_THAT(report.out,
                HasSubstr("  2.1 MB of cache and log files can be cleaned file by file; "
                          "one review takes 500 of 520 eligible files (2 MB of 2.1 "
                          "MB); review again for more. Recent files add 8 KB with "
                          "--include-recent.\n"));
    EXPECT_THAT(report.out, HasSubstr("~/.codex · 4 KB here · 53 KB in 2 folders listed "
                                      "separately\n"));
    EXPECT_THAT(report.out,
                HasSubstr("  Recent cache and log files: 33 KB with --include-recent."));

    const auto review =
        runCli({"review", "--tool", "OpenCode", "--all", "--out", (home / "review.json").native()},
               home.root());
    ASSERT_EQ(review.exitCode, 0) << review.err;
    EXPECT_THAT(review.out, HasSubstr("500 of 520 eligible files (2 MB of 2.1 MB); review again "
                                      "for more\n"));
}

TEST(CommandLine, NamesWhatItCouldNotReadWithTheReason) {
    TemporaryTree tree;
    const auto home = tree.folder("work");
    const auto result = testing::runUnprivileged(home, [&]() -> std::string {
        if (::access(TALLOWMERE_CLI_PATH, X_OK) != 0) {
            return "unreachable";
        }
        std::filesystem::create_directories(home / ".cache/opencode/locked");
        std::ofstream(home / ".cache/opencode/visible") << "abc";
        ::chmod((home / ".cache/opencode/locked").c_str(), 0);
        const auto report = runCli({"scan"}, home);
        const auto json = runCli({"scan", "--json"}, home);
        ::chmod((home / ".cache/opencode/locked").c_str(), 0700);
        return report.out + "\n" + parsedLine(json.out)["findings"][0]["unreadableEntries"].dump();
    });
    if (!result || *result == "unreachable") {
        GTEST_SKIP() << "an unprivileged user cannot run the command line here";
    }
    EXPECT_THAT(*result, HasSubstr(" · 1 entry could not be read\n"));
    EXPECT_THAT(*result,
                HasSubstr("Not read: ~/.cache/opencode/locked — You don’t have permission to "
                          "access it.\n"));
    EXPECT_THAT(*result, HasSubstr(R"([{"path":")" + (home / ".cache/opencode/locked").native() +
                                   R"(","reason":"You don’t have permission to access it."}])"));
}

}  // namespace
}  // namespace tallowmere
