#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "guidance/StorageCleanupGroup.h"

namespace tallowmere {
namespace {

using Kind = StorageCleanupGroup::Kind;

StorageCleanupFile fileOf(const std::string& path, CleanupCategory category,
                          std::int64_t allocated) {
    // The logical size differs from the allocated one so that sums show which they took.
    return StorageCleanupFile{FileEntry{path, allocated + 1'000, 0, std::nullopt},
                              "/h",
                              category,
                              allocated,
                              false,
                              std::nullopt};
}

std::vector<std::string> idsOf(const StorageCleanupGroup& group) {
    std::vector<std::string> ids;
    for (const auto& file : group.files) {
        ids.push_back(file.id());
    }
    return ids;
}

TEST(StorageCleanupGroup, GroupsCacheBeforeLogsKeepingInputOrder) {
    EXPECT_TRUE(StorageCleanupGroup::group({}).empty());

    const auto logsOnly = StorageCleanupGroup::group({fileOf("/l1", CleanupCategory::logs, 4)});
    ASSERT_EQ(logsOnly.size(), 1U);
    EXPECT_EQ(logsOnly[0].id(), Kind::logs);

    const auto groups = StorageCleanupGroup::group({
        fileOf("/l1", CleanupCategory::logs, 1),
        fileOf("/c1", CleanupCategory::cache, 10),
        fileOf("/l2", CleanupCategory::logs, 2),
        fileOf("/c2", CleanupCategory::cache, 20),
    });
    ASSERT_EQ(groups.size(), 2U);
    EXPECT_EQ(groups[0].kind, Kind::cache);
    EXPECT_EQ(idsOf(groups[0]), (std::vector<std::string>{"/c1", "/c2"}));
    EXPECT_EQ(groups[0].allocatedBytes(), 30);
    EXPECT_EQ(groups[1].kind, Kind::logs);
    EXPECT_EQ(idsOf(groups[1]), (std::vector<std::string>{"/l1", "/l2"}));
    EXPECT_EQ(groups[1].allocatedBytes(), 3);

    EXPECT_EQ((StorageCleanupGroup{Kind::cache, {}}).allocatedBytes(), 0);
}

TEST(StorageCleanupKind, CasesRoundTripThroughTheirRawValues) {
    EXPECT_EQ(StorageCleanupKind::allCases, (std::array{Kind::cache, Kind::logs}));
    for (const auto kind : StorageCleanupKind::allCases) {
        EXPECT_EQ(StorageCleanupKind::fromRawValue(StorageCleanupKind::rawValue(kind)), kind);
    }
    EXPECT_EQ(StorageCleanupKind::rawValue(Kind::logs), "logs");
    EXPECT_EQ(StorageCleanupKind::title(Kind::cache), "Rebuildable cache");
    EXPECT_EQ(StorageCleanupKind::symbol(Kind::logs), "doc.text");
    for (const auto* text : {"Cache", "Logs", "log", ""}) {
        EXPECT_EQ(StorageCleanupKind::fromRawValue(text), std::nullopt) << text;
    }
}

}  // namespace
}  // namespace tallowmere
