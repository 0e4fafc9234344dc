#include "catalog/ToolCatalog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "catalog/EditorBreakdown.h"
#include "text/NaturalOrder.h"

namespace tallowmere::AIStorageScanner {
namespace {

using ::testing::_;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::FieldsAre;

TEST(ToolCatalogTest, LocationsAreTheFourBlocksInOrder) {
    EXPECT_EQ(originalLocations().size(), 16u);
    EXPECT_EQ(additionalLocations().size(), 38u);
    EXPECT_EQ(editorCaches().size(), 35u);
    ASSERT_EQ(locations().size(), 144u);

    std::vector<StorageLocation> blocks;
    for (const auto* block :
         {&originalLocations(), &additionalLocations(), &editorCaches(), &breakdownLocations()}) {
        blocks.insert(blocks.end(), block->begin(), block->end());
    }
    ASSERT_EQ(blocks.size(), locations().size());
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        EXPECT_EQ(blocks[i].relativePath, locations()[i].relativePath) << i;
    }

    const auto& all = locations();
    EXPECT_THAT(all[0], FieldsAre("Hermes Agent", "Logs", ".hermes/logs", _));
    EXPECT_THAT(all[53], FieldsAre("Kilo Code", "Agent data", ".kilocode", _));
    EXPECT_THAT(all[54],
                FieldsAre("Cursor", "Cache", "Library/Application Support/Cursor/Cache",
                          "Generated Cursor cache. Quit the editor before removing files; it may "
                          "rebuild or download them again."));
    EXPECT_THAT(
        all[88],
        FieldsAre("IBM Bob", "Cache",
                  "Library/Application Support/IBM Bob - Insiders/CachedExtensionVSIXs", _));

    // Cache details name the editor's folder, so Antigravity's two folders read differently.
    EXPECT_THAT(all[74], FieldsAre("Antigravity", "Cache",
                                   "Library/Application Support/Antigravity IDE/Cache", _));
    EXPECT_TRUE(all[74].detail.starts_with("Generated Antigravity IDE cache."));
}

TEST(ToolCatalogTest, PathsAreDistinctWellFormedAndCategoriesAddUp) {
    std::set<std::string> ids;
    std::map<std::string, int> categories;
    for (const StorageLocation& location : locations()) {
        ids.insert(location.id());
        ++categories[location.category];
        const std::string& path = location.relativePath;
        EXPECT_FALSE(path.starts_with('/') || path.ends_with('/') ||
                     path.find("//") != std::string::npos)
            << path;
        EXPECT_FALSE(location.owner.empty() || location.detail.empty()) << path;
    }
    EXPECT_EQ(ids.size(), 144u);

    EXPECT_EQ(categories["Logs"], 16);
    EXPECT_EQ(categories["Cache"], 36);
    EXPECT_EQ(categories["Agent data"], 21);
    EXPECT_EQ(categories["Editor data"], 11);
    EXPECT_EQ(categories["App data"], 1);
    EXPECT_EQ(categories["History & projects"], 2);
    EXPECT_EQ(categories["Models"], 4);
    EXPECT_EQ(categories["Models & cache"], 1);
    EXPECT_EQ(categories["ML cache"], 1);
    EXPECT_EQ(categories["Settings & state"], 5);

    // Same owner and category, different folders: both rows stay.
    const auto lmStudioModels = std::count_if(
        locations().begin(), locations().end(),
        [](const StorageLocation& l) { return l.owner == "LM Studio" && l.category == "Models"; });
    EXPECT_EQ(lmStudioModels, 2);
}

TEST(ToolCatalogTest, UrlsResolveUnderHomeOrStandardizeAbsolutePaths) {
    const std::filesystem::path home = "/Users/a";
    EXPECT_EQ(locations()[4].url(home), std::filesystem::path("/Users/a/.claude"));

    const StorageLocation absolute{"Custom", "Custom folder", "/opt/x/../y", ""};
    EXPECT_EQ(absolute.url(home), std::filesystem::path("/opt/y"));
    EXPECT_EQ(absolute.url("/elsewhere"), std::filesystem::path("/opt/y"));

    const std::filesystem::path insiders = locations()[88].url(home);
    EXPECT_THAT(std::vector<std::string>(insiders.begin(), insiders.end()),
                ElementsAre("/", "Users", "a", "Library", "Application Support",
                            "IBM Bob - Insiders", "CachedExtensionVSIXs"));
}

TEST(ToolCatalogTest, SupportedOwnersAreEveryToolOnceInNaturalOrder) {
    EXPECT_THAT(supportedOwners(),
                ElementsAreArray<std::string>(
                    {"Amp",     "Antigravity",  "Claude Code",  "Cline",      "Codex",
                     "Cody",    "Continue",     "Cursor",       "Gemini CLI", "GitHub Copilot",
                     "Goose",   "Hermes Agent", "Hugging Face", "IBM Bob",    "Kilo Code",
                     "Kiro",    "LM Studio",    "Ollama",       "OpenClaw",   "OpenCode",
                     "Pi",      "PyTorch",      "Qwen Code",    "Roo Code",   "Whisper",
                     "Windsurf"}));
    EXPECT_EQ(supportedOwners(), supportedOwners());
}

TEST(NaturalOrderTest, IgnoresCaseAndComparesNumbersByValue) {
    EXPECT_TRUE(NaturalOrder::less("apple", "Banana"));
    EXPECT_TRUE(NaturalOrder::less("LM Studio", "models"));
    EXPECT_TRUE(NaturalOrder::less("file2", "file10"));
    EXPECT_TRUE(NaturalOrder::less("file 9 b", "file 10 a"));
    EXPECT_TRUE(NaturalOrder::less("v99999999999999999999999", "v100000000000000000000000"));
    EXPECT_FALSE(NaturalOrder::less("v100000000000000000000000", "v99999999999999999999999"));
    EXPECT_TRUE(NaturalOrder::less("2x", "a"));
    EXPECT_TRUE(NaturalOrder::less("Pi", "PyTorch"));
    EXPECT_TRUE(NaturalOrder::less("Code", "Code 2"));
}

TEST(NaturalOrderTest, BreaksTiesByBytesSoTheOrderIsTotal) {
    for (const auto& [a, b] : std::vector<std::pair<std::string, std::string>>{
             {"A", "a"}, {"file01", "file1"}, {"x007y", "x7Y"}, {"same", "same"}}) {
        EXPECT_FALSE(NaturalOrder::less(a, b) && NaturalOrder::less(b, a)) << a << " " << b;
        EXPECT_EQ(NaturalOrder::less(a, b) || NaturalOrder::less(b, a), a != b) << a << " " << b;
    }
    EXPECT_TRUE(NaturalOrder::less("A", "a"));
    EXPECT_TRUE(NaturalOrder::less("file01", "file1"));

    std::vector<std::string> names = {"b10", "B2", "a", "b02", "b2", "é", "_", "b1"};
    std::sort(names.begin(), names.end(), NaturalOrder::less);
    EXPECT_THAT(names, ElementsAre("_", "a", "b1", "B2", "b02", "b2", "b10", "é"));
}

}  // namespace
}  // namespace tallowmere::AIStorageScanner
