#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <sstream>

#include "CliRunner.h"
#include "TemporaryTree.h"
#include "text/TextRules.h"

namespace tallowmere {
namespace {

using testing::CliSetup;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using testing::onTerminal;
using testing::runCli;
using testing::TemporaryTree;
using testing::writingTo;
using Terminal = CliSetup::Terminal;

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::string wordsOf(const std::string& text) {
    std::istringstream stream(text);
    std::string words;
    for (std::string word; stream >> word;) {
        words += word + " ";
    }
    return words;
}

// A home with storage of two tools, one with a long path and long words to wrap.
struct TerminalUse : ::testing::Test {
    TemporaryTree home;

    void SetUp() override {
        home.file(".codex/sessions/2026/rollout-with-a-rather-long-name.jsonl", 40000);
        home.file(".cache/opencode/deps/packages-of-a-project-with-a-very-long-name/x.js", 9000);
    }
};

TEST_F(TerminalUse, ProgressIsDrawnInPlaceOnlyOnATerminal) {
    const auto shown = runCli({"scan"}, home.root(), onTerminal(Terminal::standardError, 34));
    ASSERT_EQ(shown.exitCode, 0);
    ASSERT_THAT(shown.err, MatchesRegex("(\r\x1b\\[K[^\r\x1b]*)+\r\x1b\\[K"));
    const std::regex clear("\r\x1b\\[K");
    for (std::sregex_token_iterator line(shown.err.begin(), shown.err.end(), clear, -1), end;
         line != end; ++line) {
        if (line->length() == 0) {
            continue;
        }
        EXPECT_THAT(line->str(), MatchesRegex("Scanning… [0-9,]+ entries · .* · 0:0[0-9].*"));
        EXPECT_LE(TextRules::codePointCount(line->str()), 33u) << *line;
    }

    const auto piped = runCli({"scan"}, home.root());
    EXPECT_EQ(piped.exitCode, 0);
    EXPECT_EQ(piped.err, "");
    EXPECT_EQ(runCli({"scan", "--json"}, home.root(), onTerminal(Terminal::standardError)).err, "");
}

TEST_F(TerminalUse, ReportsWrapAtTheTerminalWithoutBreakingWords) {
    const auto piped = runCli({"scan"}, home.root());
    ASSERT_EQ(piped.exitCode, 0);
    const auto lines = linesOf(piped.out);
    EXPECT_TRUE(std::ranges::any_of(
        lines, [](const std::string& line) { return TextRules::codePointCount(line) > 40; }));

    for (const unsigned short columns : {40, 100}) {
        const auto shown =
            runCli({"scan"}, home.root(), onTerminal(Terminal::standardOutput, columns));
        ASSERT_EQ(shown.exitCode, 0);
        EXPECT_EQ(wordsOf(shown.out), wordsOf(piped.out));
        for (const auto& line : linesOf(shown.out)) {
            // Only a word longer than the line may stick out.
            if (TextRules::codePointCount(line) > columns) {
                EXPECT_EQ(line.find(' ', line.find_first_not_of(' ')), std::string::npos) << line;
            }
        }
    }
}

TEST_F(TerminalUse, AFailedWriteOfTheOutputIsAnError) {
    for (const auto& arguments : std::vector<std::vector<std::string>>{{"catalog"},
                                                                       {"locations", "--json"},
                                                                       {"scan"},
                                                                       {"scan", "--json"},
                                                                       {"--help"},
                                                                       {"--version"},
                                                                       {"help", "scan"}}) {
        const auto run = runCli(arguments, home.root(), writingTo("/dev/full"));
        EXPECT_EQ(run.exitCode, 1) << ::testing::PrintToString(arguments);
        EXPECT_EQ(run.err,
                  "tallowmere-cli: could not write to standard output: There isn’t enough space "
                  "on the disk.\n");
    }
}

TEST_F(TerminalUse, FollowsTheUsualConventions) {
    for (const char* flag : {"--version", "-V"}) {
        const auto version = runCli({flag}, home.root());
        EXPECT_EQ(version.exitCode, 0);
        EXPECT_THAT(version.out, MatchesRegex("tallowmere-cli [0-9]+\\.[0-9]+\\.[0-9]+\n"));
    }
    for (const char* command : {"catalog", "locations", "scan", "summary", "review", "remove",
                                "restore", "empty-trash"}) {
        const auto help = runCli({command, "--help"}, home.root());
        EXPECT_EQ(help.exitCode, 0) << command;
        EXPECT_THAT(help.out, HasSubstr(std::string("tallowmere-cli ") + command));
        EXPECT_EQ(runCli({command, "-h"}, home.root()).out, help.out) << command;
        EXPECT_EQ(runCli({"help", command}, home.root()).out, help.out) << command;
    }
    for (const auto& arguments :
         std::vector<std::vector<std::string>>{{"help", "frobnicate"},
                                               {"scan", "--max-entries", "0"},
                                               {"scan", "--gentle", "--no-pause"}}) {
        const auto run = runCli(arguments, home.root());
        EXPECT_EQ(run.exitCode, 2) << ::testing::PrintToString(arguments);
        EXPECT_EQ(run.out, "");
    }
    EXPECT_EQ(runCli({"scan", "--gentle", "--json"}, home.root()).exitCode, 0);
    EXPECT_EQ(runCli({"scan", "--no-pause", "--json"}, home.root()).exitCode, 0);
}

}  // namespace
}  // namespace tallowmere
