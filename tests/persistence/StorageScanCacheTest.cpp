#include "persistence/StorageScanCache.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <system_error>

#include "ScopedVariable.h"
#include "TemporaryTree.h"
#include "platform/UserFolders.h"

namespace tallowmere {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using namespace std::string_literals;

const std::filesystem::path home = "/home/dev";
const std::vector<std::string> customPaths = {"/b", "/a"};
constexpr Date completedAt = 700'000'001.0;

StorageScan sampleScan(Date completed = completedAt) {
    StorageFinding sessions;
    sessions.location = {"Claude Code", "Sessions", ".claude/projects", "Conversation history"};
    sessions.url = "/home/dev/.claude/projects";
    sessions.allocatedBytes = 8192;
    sessions.logicalBytes = 5000;
    sessions.fileCount = 2;
    sessions.largestFiles = {FileEntry{"/home/dev/.claude/projects/a.jsonl", 5000, 1.0, FileIdentity{1, 2}}};
    StorageFinding odd;
    odd.location = {"Custom", "Custom folder", "/b/we\nird\xFF", "A folder you track"};
    odd.url = odd.location.relativePath;
    odd.allocatedBytes = 4096;
    odd.logicalBytes = 10;
    odd.fileCount = 1;
    odd.skippedCount = 1;
    odd.limited = true;
    return {{sessions, odd}, 3, 0, completed, {}};
}

std::string messageOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const std::system_error& error) {
        return error.what();
    }
    return "no error";
}

TEST(StorageScanCache, SavesCompactJsonInKeyOrderAndLoadsTheSameScan) {
    testing::TemporaryTree tree;
    const auto file = tree / "caches/Tallowmere/storage-summary.json";
    const Date fractional = 759'999'999.123456789;
    StorageScanCache::save(sampleScan(fractional), file, home, customPaths);
    std::ifstream stream(file, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    EXPECT_EQ(text,
              R"({"version":1,"home":"/home/dev","customPaths":["/a","/b"],)"
              R"("completedAt":759999999.1234568,"absent":3,"unreadable":0,"rows":[)"
              R"({"owner":"Claude Code","category":"Sessions","path":"/home/dev/.claude/projects",)"
              R"("detail":"Conversation history","allocated":8192,"logical":5000,"count":2,)"
              R"("skipped":0,"limited":false},)"
              R"({"owner":"Custom","category":"Custom folder","path":"/b/we\nird\udcff",)"
              R"("detail":"A folder you track","allocated":4096,"logical":10,"count":1,)"
              R"("skipped":1,"limited":true}]})");

    const auto loaded = StorageScanCache::load(file, home, {"/a", "/b"}, fractional + 60);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->completedAt, fractional);
    EXPECT_EQ(loaded->absentLocations, 3);
    EXPECT_EQ(loaded->unreadableLocations, 0);
    EXPECT_TRUE(loaded->incomplete());
    ASSERT_EQ(loaded->findings.size(), 2u);
    const auto& sessions = loaded->findings[0];
    EXPECT_EQ(sessions.location.owner, "Claude Code");
    EXPECT_EQ(sessions.location.category, "Sessions");
    EXPECT_EQ(sessions.location.relativePath, "/home/dev/.claude/projects");
    EXPECT_EQ(sessions.location.detail, "Conversation history");
    EXPECT_EQ(sessions.url, "/home/dev/.claude/projects");
    EXPECT_EQ(sessions.location.url(home), sessions.url);
    EXPECT_EQ(sessions.allocatedBytes, 8192);
    EXPECT_EQ(sessions.logicalBytes, 5000);
    EXPECT_EQ(sessions.fileCount, 2);
    EXPECT_TRUE(sessions.largestFiles.empty());
    const auto& odd = loaded->findings[1];
    EXPECT_EQ(odd.url, "/b/we\nird\xFF");
    EXPECT_EQ(odd.location.url(home), odd.url);
    EXPECT_EQ(odd.skippedCount, 1);
    EXPECT_TRUE(odd.limited);
}

TEST(StorageScanCache, AcceptsOnlyTheSameHomeAndCustomFoldersForAWeek) {
    const auto text = StorageScanCache::encode(sampleScan(), home, customPaths);
    const auto accepts = [&](const std::filesystem::path& loadHome,
                             const std::vector<std::string>& loadPaths, Date now) {
        return StorageScanCache::decode(text, loadHome, loadPaths, now).has_value();
    };
    EXPECT_TRUE(accepts(home, {"/a", "/b"}, completedAt));
    EXPECT_TRUE(accepts(home, {"/b", "/a"}, completedAt + 604800));
    EXPECT_FALSE(accepts(home, {"/b", "/a"}, completedAt + 604801));
    EXPECT_FALSE(accepts(home, {"/b", "/a"}, completedAt - 1));
    EXPECT_FALSE(accepts(home, {"/b", "/a"}, std::numeric_limits<double>::quiet_NaN()));
    EXPECT_FALSE(accepts(home, {"/a"}, completedAt));
    EXPECT_FALSE(accepts(home, {"/a", "/b", "/b"}, completedAt));
    EXPECT_FALSE(accepts(home, {}, completedAt));
    EXPECT_FALSE(accepts("/home/dev/", customPaths, completedAt));
    EXPECT_FALSE(accepts("/home/other", customPaths, completedAt));
    const auto slashed = StorageScanCache::encode(sampleScan(), "/home/dev/", {});
    EXPECT_FALSE(StorageScanCache::decode(slashed, home, {}, completedAt));
}

TEST(StorageScanCache, RefusesDamagedSummariesWholeAndIgnoresUnknownKeys) {
    const auto text = StorageScanCache::encode(sampleScan(), home, customPaths);
    const auto edited = [&](const std::string& from, const std::string& to) {
        EXPECT_NE(text.find(from), std::string::npos) << from;
        std::string copy = text;
        for (auto at = copy.find(from); at != std::string::npos; at = copy.find(from, at)) {
            copy.replace(at, from.size(), to);
            at += to.size();
        }
        return copy;
    };
    const auto decodes = [&](const std::string& json) {
        return StorageScanCache::decode(json, home, customPaths, completedAt).has_value();
    };
    ASSERT_TRUE(decodes(text));
    for (const auto& [from, to] : std::vector<std::pair<std::string, std::string>>{
             {R"("version":1)", R"("version":2)"},
             {R"("version":1)", R"("version":1.0)"},
             {R"(,"limited":true)", ""},
             {R"("count":2)", R"("count":1.5)"},
             {R"("limited":false)", R"("limited":1)"},
             {R"("absent":3)", R"("absent":"3")"},
             {R"("allocated":8192)", R"("allocated":9223372036854775808)"},
             {R"("/a",)", "2,"},
             {R"("home":"/home/dev",)", ""},
             {R"("completedAt":700000001.0)", R"("completedAt":null)"},
             {R"("customPaths":["/a","/b"])", R"("customPaths":"/a")"},
         }) {
        EXPECT_FALSE(decodes(edited(from, to))) << from << " -> " << to;
    }
    for (const std::string& broken : {text.substr(0, text.size() - 1), ""s, "\0\xFF{]"s,
                                      edited("we\\nird", "we\nird"), "[" + text + "]"}) {
        EXPECT_FALSE(decodes(broken)) << ::testing::PrintToString(broken);
    }

    EXPECT_TRUE(decodes(edited("/", "\\/")));
    EXPECT_TRUE(decodes(edited(R"("completedAt":700000001.0)", R"("completedAt":700000001)")));
    EXPECT_TRUE(
        decodes(edited(R"({"version":1,)", R"({"extra":{"nested":[1.5,null]},"version":1,)")));
    EXPECT_TRUE(decodes(edited(R"("limited":false)", R"("limited":false,"note":"?")")));

    testing::TemporaryTree tree;
    EXPECT_FALSE(StorageScanCache::load(tree / "missing.json", home, customPaths, completedAt));
    const auto huge = tree / "huge.json";
    std::ofstream(huge, std::ios::binary) << text << std::string(64, ' ');
    EXPECT_TRUE(StorageScanCache::load(huge, home, customPaths, completedAt));
    std::ofstream(huge, std::ios::binary) << text << std::string(std::size_t{64} << 20, ' ');
    EXPECT_FALSE(StorageScanCache::load(huge, home, customPaths, completedAt));
}

TEST(StorageScanCache, FailedSaveThrowsNamingThePathAndKeepsTheEarlierSummary) {
    testing::TemporaryTree tree;
    const auto folder = tree / "caches/Tallowmere";
    const auto file = folder / "storage-summary.json";
    StorageScanCache::save(sampleScan(), file, home, customPaths);
    ASSERT_EQ(::chmod(folder.c_str(), 0555), 0);
    const auto message = testing::runUnprivileged(tree.root(), [&] {
        return messageOf([&] { StorageScanCache::save({}, file, home, {}); });
    });
    if (message) {
        EXPECT_THAT(*message, AllOf(HasSubstr(file.native()), HasSubstr("Permission denied")));
    }
    ASSERT_EQ(::chmod(folder.c_str(), 0755), 0);

    EXPECT_THAT(messageOf([&] {
                    StorageScanCache::save(sampleScan(std::numeric_limits<double>::infinity()),
                                           file, home, customPaths);
                }),
                AllOf(HasSubstr(file.native()), HasSubstr("not a finite number")));
    EXPECT_THAT(messageOf([&] {
                    StorageScanCache::save({}, tree / "caches/Tallowmere/storage-summary.json/x",
                                           home, {});
                }),
                AllOf(HasSubstr(file.native()), HasSubstr("Cannot create the folder")));

    const auto kept = StorageScanCache::load(file, home, customPaths, completedAt);
    ASSERT_TRUE(kept);
    EXPECT_EQ(kept->findings.size(), 2u);
}

TEST(StorageScanCache, SummaryFileLiesInTheCachesFolder) {
    testing::TemporaryTree tree;
    const auto userHome = tree.folder("home/dev");
    testing::ScopedVariable homeVariable("HOME", userHome.native());
    {
        testing::ScopedVariable caches("XDG_CACHE_HOME", "/var/cache/dev/./x/../");
        EXPECT_EQ(UserFolders::cachesFolder(), "/var/cache/dev");
        EXPECT_EQ(UserFolders::summaryFile(), "/var/cache/dev/Tallowmere/storage-summary.json");
    }
    for (const auto& value : {std::optional<std::string>(), std::optional<std::string>("rel"),
                              std::optional<std::string>("")}) {
        testing::ScopedVariable caches("XDG_CACHE_HOME", value);
        EXPECT_EQ(UserFolders::summaryFile(), userHome / ".cache/Tallowmere/storage-summary.json");
    }

    // Forgotten before a removal or an undo; with nothing there, nothing happens.
    testing::ScopedVariable caches("XDG_CACHE_HOME", std::nullopt);
    const auto file = tree.file("home/dev/.cache/Tallowmere/storage-summary.json");
    StorageScanCache::forget();
    EXPECT_FALSE(testing::presentAt(file));
    StorageScanCache::forget();
}

}  // namespace
}  // namespace tallowmere
