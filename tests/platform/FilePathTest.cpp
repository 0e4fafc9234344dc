#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "platform/FilePath.h"

namespace tallowmere {
namespace {

TEST(FilePath, KeepsAnyBytesAndComparesByValue) {
    const std::string bytes = "/h/caf\xc3\xa9/line\nbreak/\xff\xfe";
    const FilePath path(bytes);
    EXPECT_EQ(path.native(), bytes);
    EXPECT_STREQ(path.c_str(), bytes.c_str());
    EXPECT_EQ(std::filesystem::path(path), std::filesystem::path(bytes));
    EXPECT_EQ(path, FilePath(std::string(bytes)));  // another block, the same path
    EXPECT_EQ(path, std::filesystem::path(bytes));
    EXPECT_NE(path, FilePath("/h/other"));

    const FilePath none;
    EXPECT_TRUE(none.empty());
    EXPECT_STREQ(none.c_str(), "");
    EXPECT_EQ(none, FilePath(""));

    EXPECT_EQ(FilePath::joined("/h/.cache", "a\nb").native(), "/h/.cache/a\nb");
    EXPECT_EQ(FilePath::joined("/", "h").native(), "/h");
}

// Copies share one block; each lives on whatever happens to the others.
TEST(FilePath, CopiesOutliveEachOther) {
    std::vector<FilePath> copies;
    {
        FilePath original("/h/.cache/a.log");
        copies.assign(3, original);
        FilePath moved(std::move(original));
        copies.push_back(moved);
        moved = FilePath("/h/b");
        EXPECT_EQ(moved.native(), "/h/b");
    }
    copies.erase(copies.begin());
    copies[0] = copies[1];
    for (const auto& copy : copies) {
        EXPECT_EQ(copy.native(), "/h/.cache/a.log");
    }
}

}  // namespace
}  // namespace tallowmere
