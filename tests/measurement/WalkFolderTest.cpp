#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "measurement/WalkFolder.h"

namespace tallowmere {
namespace {

// Walk order: a folder before what it holds, what it holds before its next sibling, and
// siblings by listing index, whatever the number of bytes each index takes.
TEST(WalkFolder, OrdersCompareAsAWalkInOrderMeetsThem) {
    const std::vector<std::uint32_t> indices = {0,     1,     127,   128,        129,
                                                16511, 16512, 16513, 0x00FFFFFF, 0xFFFFFFFF};
    const WalkFolder root;
    for (std::size_t first = 0; first < indices.size(); ++first) {
        for (std::size_t second = 0; second < indices.size(); ++second) {
            EXPECT_EQ(root.orderOf(indices[first]) < root.orderOf(indices[second]), first < second)
                << indices[first] << " against " << indices[second];
        }
        const WalkFolder folder = childFolder(root, "f", indices[first], false, {});
        const std::string deepest = folder.orderOf(0xFFFFFFFF);
        EXPECT_LT(folder.order, folder.orderOf(0));
        if (first + 1 < indices.size()) {
            EXPECT_LT(deepest, root.orderOf(indices[first + 1]));
        }
        if (first > 0) {
            EXPECT_GT(folder.orderOf(0), root.orderOf(indices[first - 1]));
        }
    }
}

TEST(WalkFolder, ChildrenKnowTheirPathProtectionAndNestedLocations) {
    WalkFolder root;
    root.path = "/h/.cache";
    const std::vector<std::string> nested = {"/h/.cache/a/b", "/h/.cache/a/c/d", "/h/other"};
    const WalkFolder a = childFolder(root, "a", 3, true, nested);
    EXPECT_EQ(a.path, "/h/.cache/a");
    EXPECT_EQ(a.nestedNames, std::vector<std::string>{"b"});
    EXPECT_TRUE(a.isNested("b"));
    EXPECT_FALSE(a.isNested("c"));
    EXPECT_EQ(a.pathOf("x\n\xff"), "/h/.cache/a/x\n\xff");
    EXPECT_FALSE(a.protectedFolder);
    // Protection passes down; it is only looked for where files are cleaned one by one.
    const WalkFolder sessions = childFolder(a, "Sessions", 0, true, nested);
    EXPECT_TRUE(sessions.protectedFolder);
    EXPECT_TRUE(childFolder(sessions, "plain", 0, true, nested).protectedFolder);
    EXPECT_FALSE(childFolder(a, "Sessions", 0, false, nested).protectedFolder);

    WalkFolder top;
    top.path = "/";
    EXPECT_EQ(top.pathOf("h"), "/h");
}

}  // namespace
}  // namespace tallowmere
