#include <gtest/gtest.h>

#include <array>
#include <set>
#include <string>

#include "catalog/CustomFolder.h"
#include "catalog/ToolCatalog.h"
#include "guidance/StorageGuidance.h"

namespace tallowmere {
namespace {

using Group = StorageGuidance::Group;

constexpr std::string_view unknownAdvice = "Inspect before removing";
constexpr std::string_view mixedSummary =
    "Mixed data \xC2\xB7 Removal may reset the tool or erase work";

TEST(StorageGuidance, LabelsMatchExactlyAndUnknownOnesFallToTheCautiousRow) {
    const auto cache = StorageGuidance::forCategory("Cache");
    EXPECT_EQ(cache.group, Group::rebuildable);
    EXPECT_EQ(cache.advice, "Can rebuild");
    EXPECT_EQ(cache.category, "Cache");
    EXPECT_EQ(cache.summary(), "Can rebuild \xC2\xB7 May download again");

    for (const std::string label : {"cache", "logs", "", "Cache ", "Agent data"}) {
        const auto guidance = StorageGuidance::forCategory(label);
        EXPECT_EQ(guidance.group, Group::mixed) << label;
        EXPECT_EQ(guidance.advice, unknownAdvice) << label;
        EXPECT_EQ(guidance.category, label);
        EXPECT_EQ(guidance.summary(), mixedSummary) << label;
    }

    const auto models = StorageGuidance::forCategory("Models & cache");
    EXPECT_EQ(models.group, Group::savedWork);
    EXPECT_EQ(models.consequence,
              "Models or shared ML assets will be unavailable until downloaded again. Prefer the "
              "tool\xE2\x80\x99s model manager to preserve shared files.");

    const auto ide = StorageGuidance::forCategory("IDE extension data");
    EXPECT_EQ(ide.group, Group::mixed);
    EXPECT_EQ(ide.advice, "Review in the owning tool");
    EXPECT_EQ(ide.summary(), mixedSummary);

    const auto sessions = StorageGuidance::forCategory("Archived sessions");
    EXPECT_EQ(sessions.group, Group::savedWork);
    EXPECT_EQ(sessions.summary(), "Removes saved conversations and context");
}

TEST(StorageGuidance, EveryCatalogCategoryIsKnownButTheGeneralOnes) {
    std::set<std::string> categories{customFolderLocation("/Users/a/Work").category};
    for (const auto& location : AIStorageScanner::locations()) {
        categories.insert(location.category);
    }
    const std::set<std::string> general{"Agent data", "Editor data", "App data", "Custom folder"};
    std::set<std::string> unknown;
    for (const auto& category : categories) {
        if (StorageGuidance::forCategory(category).advice == unknownAdvice) {
            unknown.insert(category);
        }
    }
    EXPECT_EQ(unknown, general);
}

TEST(StorageGuidanceGroup, CasesRoundTripThroughTheirRawValues) {
    EXPECT_EQ(StorageGuidanceGroup::allCases,
              (std::array{Group::rebuildable, Group::savedWork, Group::settings, Group::mixed}));
    std::set<std::string_view> titles;
    for (const auto group : StorageGuidanceGroup::allCases) {
        EXPECT_EQ(StorageGuidanceGroup::fromRawValue(StorageGuidanceGroup::rawValue(group)), group);
        titles.insert(StorageGuidanceGroup::title(group));
    }
    EXPECT_EQ(titles.size(), 4U);
    EXPECT_EQ(StorageGuidanceGroup::rawValue(Group::savedWork), "savedWork");
    EXPECT_EQ(StorageGuidanceGroup::title(Group::settings), "Settings & sign-in");
    for (const auto* text : {"SavedWork", "saved_work", "Mixed", "", "Cache"}) {
        EXPECT_EQ(StorageGuidanceGroup::fromRawValue(text), std::nullopt) << text;
    }
}

}  // namespace
}  // namespace tallowmere
