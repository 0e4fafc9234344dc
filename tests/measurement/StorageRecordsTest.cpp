#include <gtest/gtest.h>

#include <limits>

#include "TemporaryTree.h"
#include "measurement/DiskSpace.h"
#include "measurement/FileEntry.h"
#include "measurement/StorageLocation.h"
#include "measurement/StorageScan.h"

namespace tallowmere {
namespace {

StorageFinding findingOf(std::int64_t allocated, std::int64_t skipped = 0, bool limited = false) {
    StorageFinding finding;
    finding.allocatedBytes = allocated;
    finding.skippedCount = skipped;
    finding.limited = limited;
    return finding;
}

TEST(StorageScan, TotalsAndCompleteness) {
    EXPECT_EQ(StorageScan{}.allocatedBytes(), 0);
    EXPECT_FALSE((StorageScan{{}, 5, 0, 0, {}}).incomplete());
    EXPECT_TRUE((StorageScan{{}, 0, 1, 0, {}}).incomplete());
    EXPECT_TRUE((StorageScan{{findingOf(1, 1)}, 0, 0, 0, {}}).incomplete());
    EXPECT_TRUE((StorageScan{{findingOf(1, 0, true)}, 0, 0, 0, {}}).incomplete());
    const StorageScan scan{{findingOf(1'000'000'000'000), findingOf(2)}, 0, 0, 0, {}};
    EXPECT_EQ(scan.allocatedBytes(), 1'000'000'000'002);
    EXPECT_FALSE(scan.incomplete());
}

TEST(StorageLocation, UrlIsStandardizedAndKeepsComponents) {
    const std::filesystem::path home = "/Users/a";
    EXPECT_EQ((StorageLocation{"", "", ".claude", ""}).url(home), "/Users/a/.claude");
    EXPECT_EQ((StorageLocation{"", "", "/opt/x/../y", ""}).url(home), "/opt/y");
    EXPECT_EQ((StorageLocation{"", "", "/opt/./x/", ""}).url(home), "/opt/x");
    const StorageLocation spaced{"", "", "Library/Application Support/IBM Bob - Insiders/Cache",
                                 ""};
    const auto url = spaced.url(home);
    EXPECT_EQ(url, "/Users/a/Library/Application Support/IBM Bob - Insiders/Cache");
    EXPECT_EQ(std::distance(url.begin(), url.end()), 7);
    EXPECT_EQ(spaced.id(), spaced.relativePath);
}

TEST(FileEntry, EqualityTakesEveryField) {
    const FileEntry entry{"/h/a.log", 3, 10.5, FileIdentity{1, 2}};
    EXPECT_EQ(entry, (FileEntry{"/h/a.log", 3, 10.5, FileIdentity{1, 2}}));
    EXPECT_NE(entry, (FileEntry{"/h/a.log", 3, 10.5, std::nullopt}));
    EXPECT_NE(entry, (FileEntry{"/h/a.log", 3, 10.25, FileIdentity{1, 2}}));
    EXPECT_EQ(entry.id(), "/h/a.log");
    EXPECT_EQ(entry.name(), "a.log");
}

TEST(DiskSpace, ReadsTheVolumeAndComparesInDecimalGigabytes) {
    testing::TemporaryTree tree;
    const auto space = DiskSpace::read(tree.root());
    EXPECT_GT(space.total, 0);
    EXPECT_GE(space.total, space.available);
    EXPECT_THROW(DiskSpace::read(tree / "missing"), std::system_error);

    EXPECT_TRUE((DiskSpace{0, 19'999'999'999}).isLow(20));
    EXPECT_FALSE((DiskSpace{0, 20'000'000'000}).isLow(20));
    // A threshold whose bytes do not fit in 64 bits saturates instead of wrapping around.
    EXPECT_TRUE((DiskSpace{0, std::numeric_limits<std::int64_t>::max()}).isLow(9'300'000'000));
    EXPECT_FALSE((DiskSpace{0, 0}).isLow(-9'300'000'000));
    EXPECT_FALSE((DiskSpace{0, 0}).isLow(0));
}

}  // namespace
}  // namespace tallowmere
