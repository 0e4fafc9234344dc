#include "removal/StorageRemovalPlan.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tallowmere {
namespace {

StorageCleanupFile cleanupFile(const std::string& path, std::int64_t allocated, bool recent) {
    return {FileEntry{path, allocated, 0, FileIdentity{1, 1}},
            "/",
            CleanupCategory::cache,
            allocated,
            recent,
            std::nullopt};
}

// A finding whose old files are eligible with and without recent ones, and whose recent files
// only with them, as the scanner fills both lists.
StorageFinding finding(const std::string& path, const std::string& category,
                       const std::vector<std::string>& oldFiles = {},
                       const std::vector<std::string>& recentFiles = {}) {
    StorageFinding result;
    result.location = {"Tool", category, path, ""};
    result.url = path;
    for (const auto& file : oldFiles) {
        result.cleanupFiles.push_back(cleanupFile(file, 10, false));
        result.recentCleanupFiles.push_back(cleanupFile(file, 10, true));
    }
    for (const auto& file : recentFiles) {
        result.recentCleanupFiles.push_back(cleanupFile(file, 10, true));
    }
    return result;
}

template <typename Item>
std::vector<std::string> idsOf(const std::vector<Item>& items) {
    std::vector<std::string> ids;
    for (const auto& item : items) {
        ids.push_back(item.id());
    }
    return ids;
}

using Paths = std::vector<std::string>;

TEST(StorageRemovalPlan, SelectabilityAndEmptyPlans) {
    const StorageFinding recentCache = finding("/x/cache", "Cache", {}, {"/x/cache/new"});
    const StorageFinding data = finding("/x/data", "Agent data");
    EXPECT_TRUE(StorageRemovalPlan::usesEligibleFiles(finding("/x/l", "Logs")));
    EXPECT_FALSE(StorageRemovalPlan::usesEligibleFiles(finding("/x/l", "logs")));
    EXPECT_TRUE(StorageRemovalPlan::canSelect(data, false));
    EXPECT_FALSE(StorageRemovalPlan::canSelect(finding("/x/c", "Cache"), true));
    EXPECT_FALSE(StorageRemovalPlan::canSelect(recentCache, false));
    EXPECT_TRUE(StorageRemovalPlan::canSelect(recentCache, true));
    EXPECT_EQ(StorageRemovalPlan::candidates(recentCache, true).size(), 1U);
    EXPECT_TRUE(StorageRemovalPlan::candidates(recentCache, false).empty());

    const StorageTool tool{"Tool", {recentCache, data}};
    EXPECT_TRUE(StorageRemovalPlan::make(tool, {}, true).isEmpty());
    EXPECT_TRUE(StorageRemovalPlan::make(tool, {"/x/other", "/x/data/"}, true).isEmpty());
    EXPECT_TRUE(StorageRemovalPlan::make(tool, {"/x/cache"}, false).isEmpty());
    const auto withRecent = StorageRemovalPlan::make(tool, {"/x/cache"}, true);
    EXPECT_EQ(idsOf(withRecent.files), Paths{"/x/cache/new"});
    EXPECT_TRUE(withRecent.folders.empty());
    EXPECT_TRUE(withRecent.files.front().includesRecent);
}

TEST(StorageRemovalPlan, KeepsOutermostFoldersInFindingOrder) {
    const StorageTool tool{
        "Tool",
        {finding("/x/data/sub", "Agent data"), finding("/x/data2", "Settings"),
         finding("/x/data", "Agent data"), finding("/x/cache", "Cache", {"/x/cache/a"})}};
    EXPECT_EQ(idsOf(StorageRemovalPlan::make(tool, {"/x/data", "/x/data/sub"}, false).folders),
              Paths{"/x/data"});
    const auto plan =
        StorageRemovalPlan::make(tool, {"/x/data", "/x/data2", "/x/data/sub", "/x/cache"}, false);
    EXPECT_EQ(idsOf(plan.folders), (Paths{"/x/data2", "/x/data"}));
    EXPECT_EQ(idsOf(plan.files), Paths{"/x/cache/a"});  // a cache folder is never removed whole
}

TEST(StorageRemovalPlan, LeavesOutFilesInsideRemovedFolders) {
    const StorageTool tool{
        "Tool",
        {finding("/x/app", "Agent data"),
         finding("/x/app/logs", "Logs", {"/x/app/logs/a.log", "/x/app/logs/b.log"}),
         finding("/x/cache", "Custom"), finding("/x/cache2", "Cache", {"/x/cache2/blob"})}};
    const auto plan =
        StorageRemovalPlan::make(tool, {"/x/app", "/x/app/logs", "/x/cache", "/x/cache2"}, false);
    EXPECT_EQ(idsOf(plan.folders), (Paths{"/x/app", "/x/cache"}));
    EXPECT_EQ(idsOf(plan.files), Paths{"/x/cache2/blob"});
}

TEST(StorageRemovalPlan, ListsSharedFilesOnceAndKeepsTheLargest500) {
    StorageFinding first = finding("/x/one", "Cache");
    StorageFinding second = finding("/x/two", "Logs");
    // 800 files, half of 3 bytes and half of 2, so the cut at 500 falls among the 2-byte ones.
    for (int index = 0; index < 400; ++index) {
        const std::int64_t size = index % 2 == 0 ? 3 : 2;
        first.cleanupFiles.push_back(cleanupFile("/x/one/" + std::to_string(index), size, false));
        second.cleanupFiles.push_back(cleanupFile("/x/two/" + std::to_string(index), size, false));
    }
    second.cleanupFiles.insert(second.cleanupFiles.begin(), cleanupFile("/x/one/0", 3, false));
    const StorageTool tool{"Tool", {first, second}};
    const auto plan = StorageRemovalPlan::make(tool, {"/x/one", "/x/two"}, false);

    ASSERT_EQ(plan.files.size(), 500U);
    EXPECT_EQ(plan.files[0].id(), "/x/one/0");  // where it was first listed, not second
    EXPECT_EQ(plan.files[199].id(), "/x/one/398");
    EXPECT_EQ(plan.files[200].id(), "/x/two/0");
    EXPECT_EQ(plan.files[399].id(), "/x/two/398");
    EXPECT_EQ(plan.files[400].id(), "/x/one/1");
    EXPECT_EQ(plan.files[499].id(), "/x/one/199");
}

}  // namespace
}  // namespace tallowmere
