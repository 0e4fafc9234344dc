#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "measurement/StorageTool.h"

namespace tallowmere {
namespace {

StorageFinding findingOf(const std::string& owner, const std::string& category,
                         std::int64_t allocated, const std::string& path = "") {
    StorageFinding finding;
    finding.location = StorageLocation{owner, category, path, ""};
    finding.url = "/h/" + path;
    finding.allocatedBytes = allocated;
    return finding;
}

StorageCleanupFile cleanupFileOf(const std::string& path, std::int64_t allocated) {
    return StorageCleanupFile{FileEntry{path, allocated, 0, std::nullopt},
                              "/h",
                              CleanupCategory::cache,
                              allocated,
                              true,
                              std::nullopt};
}

std::vector<std::string> ownersOf(const std::vector<StorageTool>& tools) {
    std::vector<std::string> owners;
    for (const auto& tool : tools) {
        owners.push_back(tool.owner);
    }
    return owners;
}

std::vector<std::string> pathsOf(const std::vector<StorageFinding>& findings) {
    std::vector<std::string> paths;
    for (const auto& finding : findings) {
        paths.push_back(finding.location.relativePath);
    }
    return paths;
}

TEST(StorageTool, GroupOrdersToolsByTotalThenOwnerWhateverTheInputOrder) {
    EXPECT_TRUE(StorageTool::group({}).empty());

    std::vector<StorageFinding> findings{
        findingOf("Codex", "Sessions", 2'000, "codex-small"),
        findingOf("Goose", "Logs", 0, "goose"),
        findingOf("Cline", "Task history", 5'000, "cline"),
        findingOf("Codex", "Logs", 3'000, "codex-large"),
        findingOf("Amp", "Cache", 5'001, "amp"),
        findingOf("Codex", "Cache", 0, "codex-empty"),
    };
    const std::vector<std::string> expected{"Amp", "Cline", "Codex", "Goose"};
    EXPECT_EQ(ownersOf(StorageTool::group(std::vector(findings))), expected);
    std::ranges::reverse(findings);
    const auto tools = StorageTool::group(std::vector(findings));
    EXPECT_EQ(ownersOf(tools), expected);

    EXPECT_EQ(tools[2].id(), "Codex");
    EXPECT_EQ(pathsOf(tools[2].findings),
              (std::vector<std::string>{"codex-large", "codex-small", "codex-empty"}));
    // A tool of empty folders is still a tool; only its findings are hidden.
    EXPECT_EQ(tools[3].allocatedBytes(), 0);
    EXPECT_TRUE(tools[3].visibleFindings().empty());
}

TEST(StorageTool, GroupKeepsInputOrderOfEqualFindingsAndMatchesOwnersExactly) {
    // Enough equal sizes that an unstable sort would reorder them.
    std::vector<StorageFinding> findings{findingOf("cursor", "Cache", 1, "lower")};
    std::vector<std::string> expected{"largest"};
    for (int i = 0; i < 20; ++i) {
        findings.push_back(findingOf("Cursor", "Cache", 7, std::to_string(i)));
        expected.push_back(std::to_string(i));
    }
    findings.push_back(findingOf("Cursor", "Logs", 9, "largest"));
    const auto tools = StorageTool::group(std::vector(findings));
    ASSERT_EQ(ownersOf(tools), (std::vector<std::string>{"Cursor", "cursor"}));
    EXPECT_EQ(pathsOf(tools[0].findings), expected);
}

TEST(StorageTool, TotalsIncludeHiddenFindingsAndIncompletenessComesFromWalks) {
    auto hiddenCache = findingOf("Amp", "Cache", 3'000'000'000);
    hiddenCache.fileCount = 40;
    auto models = findingOf("Amp", "Models", 5);
    models.fileCount = 2;
    StorageTool tool{"Amp", {hiddenCache, models}};
    EXPECT_EQ(tool.allocatedBytes(), 3'000'000'005);
    EXPECT_EQ(tool.fileCount(), 42);
    EXPECT_FALSE(tool.incomplete());

    tool.findings[1].skippedCount = 2;
    EXPECT_TRUE(tool.incomplete());
    tool.findings[1].skippedCount = 0;
    tool.findings[0].limited = true;
    EXPECT_TRUE(tool.incomplete());
}

TEST(StorageTool, CacheAndLogFindingsShowOnlyWhileTheyHoldCleanableBytes) {
    auto bigCache = findingOf("Amp", "Cache", 3'000'000'000, "big-cache");
    auto emptyFileCache = findingOf("Amp", "Cache", 4'096, "empty-file-cache");
    emptyFileCache.recentCleanupFiles = {cleanupFileOf("/h/zero", 0)};
    auto smallLogs = findingOf("Amp", "Logs", 0, "small-logs");
    smallLogs.recentCleanupFiles = {cleanupFileOf("/h/zero", 0), cleanupFileOf("/h/a.log", 1)};
    const auto models = findingOf("Amp", "Models", 1, "models");
    const auto emptyModels = findingOf("Amp", "Models", 0, "empty-models");
    // Lower-case labels are ordinary categories, shown by their own size.
    const auto lowerCache = findingOf("Amp", "cache", 1, "lower-cache");

    const StorageTool tool{"Amp",
                           {bigCache, emptyFileCache, smallLogs, models, emptyModels, lowerCache}};
    EXPECT_EQ(pathsOf(tool.visibleFindings()),
              (std::vector<std::string>{"small-logs", "models", "lower-cache"}));
    EXPECT_EQ(tool.visibleFindingCount(), 3);
}

TEST(StorageTool, CategoriesAreDistinctInByteOrder) {
    const StorageTool tool{"Amp",
                           {findingOf("Amp", "Logs", 1), findingOf("Amp", "cache", 1),
                            findingOf("Amp", "Cache", 1), findingOf("Amp", "Logs", 1)}};
    EXPECT_EQ(tool.categories(), (std::vector<std::string>{"Cache", "Logs", "cache"}));
}

TEST(StorageTool, CleanupFilesKeepTheFiveHundredLargestInStableOrder) {
    auto first = findingOf("Amp", "Cache", 10);
    auto second = findingOf("Amp", "Logs", 10);
    for (int i = 0; i < 400; ++i) {
        first.recentCleanupFiles.push_back(cleanupFileOf("/a" + std::to_string(i), i));
        second.recentCleanupFiles.push_back(cleanupFileOf("/b" + std::to_string(i), i));
    }
    const StorageTool tool{"Amp", {first, second}};
    const auto files = tool.cleanupFiles();
    ASSERT_EQ(files.size(), 500U);
    // Sizes 399 down to 150, each pair in findings order.
    for (std::size_t pair = 0; pair < 250; ++pair) {
        const auto size = std::to_string(399 - pair);
        EXPECT_EQ(files[2 * pair].id(), "/a" + size);
        EXPECT_EQ(files[2 * pair + 1].id(), "/b" + size);
    }
    // Twice 150 through 399, not the 159,600 of all 800 files.
    EXPECT_EQ(tool.reviewBytes(), 137'250);
    EXPECT_EQ((StorageTool{"Amp", {}}).reviewBytes(), 0);
}

}  // namespace
}  // namespace tallowmere
