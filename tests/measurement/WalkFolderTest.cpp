#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "measurement/WalkFolder.h"

namespace tallowmere {
namespace {

// Walk order: a folder before what it holds, what it holds before its next sibling, and
// siblings by listing index, whatever the number of bytes each index takes.
TEST(WalkFolder, OrdersCompareAsAWalkInOrderMeetsThem) {
    const std::vector<std::uint32_t> indices = {0,     1,     127,   128,        129,
                                                16511, 16512, 16513, 0x00FFFFFF, 0xFFFFFFFF};
    const auto root = std::make_shared<const WalkFolder>(locationFolder("/h", false, {}));
    for (std::size_t first = 0; first < indices.size(); ++first) {
        for (std::size_t second = 0; second < indices.size(); ++second) {
            EXPECT_EQ(root->orderOf(indices[first]) < root->orderOf(indices[second]),
                      first < second)
                << indices[first] << " against " << indices[second];
        }
        const WalkFolder folder = childFolder(root, "f", indices[first], false, {});
        const std::string deepest = folder.orderOf(0xFFFFFFFF);
        EXPECT_LT(folder.order(), folder.orderOf(0));
        if (first + 1 < indices.size()) {
            EXPECT_LT(deepest, root->orderOf(indices[first + 1]));
        }
        if (first > 0) {
            EXPECT_GT(folder.orderOf(0), root->orderOf(indices[first - 1]));
        }
    }
}

TEST(WalkFolder, ChildrenKnowTheirPathProtectionAndNestedLocations) {
    const std::vector<std::string> nested = {"/h/.cache/a/b", "/h/.cache/a/c/d", "/h/other"};
    const auto root =
        std::make_shared<const WalkFolder>(locationFolder("/h/.cache", false, nested));
    const auto a = std::make_shared<const WalkFolder>(childFolder(root, "a", 3, true, nested));
    EXPECT_EQ(a->path(), "/h/.cache/a");
    EXPECT_EQ(a->nestedNames, std::vector<std::string>{"b"});
    EXPECT_TRUE(a->isNested("b"));
    EXPECT_FALSE(a->isNested("c"));
    EXPECT_EQ(a->pathOf("x\n\xff"), "/h/.cache/a/x\n\xff");
    EXPECT_FALSE(a->protectedFolder);
    // Protection passes down; it is only looked for where files are cleaned one by one.
    const auto sessions =
        std::make_shared<const WalkFolder>(childFolder(a, "Sessions", 0, true, nested));
    EXPECT_TRUE(sessions->protectedFolder);
    EXPECT_TRUE(childFolder(sessions, "plain", 0, true, nested).protectedFolder);
    EXPECT_FALSE(childFolder(a, "Sessions", 0, false, nested).protectedFolder);

    EXPECT_EQ(locationFolder("/", false, {}).pathOf("h"), "/h");
}

// Deep down a folder keeps only its name and index; what it makes of them must be what the
// folders near the top keep.
TEST(WalkFolder, DeepFoldersGiveTheSamePathsAndOrdersAsShallowOnes) {
    const std::vector<std::string> nested = {
        "/h/c/d0/d1/d2/d3/d4/d5/d6/d7/d8/d9/d10/d11/d12/d13/"
        "d14/d15/d16/d17/d18/d19/d20/d21/d22/d23/d24/d25/d26/"
        "d27/d28/d29/d30/d31/d32/d33/d34/d35/d36/d37/d38/d39/"
        "d40/d41/d42/d43/d44/d45/d46/d47/d48/d49/d50/d51/d52/"
        "d53/d54/d55/d56/d57/d58/d59/d60/d61/d62/d63/d64/d65/"
        "d66/d67/d68/d69/nested"};
    auto folder = std::make_shared<const WalkFolder>(locationFolder("/h/c", false, nested));
    std::string path = "/h/c";
    std::string order;
    for (std::uint32_t level = 0; level < 2 * WalkFolder::keptDepth; ++level) {
        const std::string name = "d" + std::to_string(level);
        const std::uint32_t index = level * 1000;
        order = folder->orderOf(index);
        path += "/" + name;
        folder =
            std::make_shared<const WalkFolder>(childFolder(folder, name, index, false, nested));
        ASSERT_EQ(folder->path(), path);
        ASSERT_EQ(folder->order(), order);
        ASSERT_EQ(folder->filePathOf("f").native(), path + "/f");
        ASSERT_EQ(folder->isNested("nested"), level == 69);
    }
}

}  // namespace
}  // namespace tallowmere
