#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "measurement/WalkFolder.h"

namespace tallowmere {
namespace {

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

// Deep down a folder keeps only its name; the path it makes must be what the folders near the
// top keep.
TEST(WalkFolder, DeepFoldersGiveTheSamePathsAsShallowOnes) {
    const std::vector<std::string> nested = {
        "/h/c/d0/d1/d2/d3/d4/d5/d6/d7/d8/d9/d10/d11/d12/d13/"
        "d14/d15/d16/d17/d18/d19/d20/d21/d22/d23/d24/d25/d26/"
        "d27/d28/d29/d30/d31/d32/d33/d34/d35/d36/d37/d38/d39/"
        "d40/d41/d42/d43/d44/d45/d46/d47/d48/d49/d50/d51/d52/"
        "d53/d54/d55/d56/d57/d58/d59/d60/d61/d62/d63/d64/d65/"
        "d66/d67/d68/d69/nested"};
    auto folder = std::make_shared<const WalkFolder>(locationFolder("/h/c", false, nested));
    std::string path = "/h/c";
    for (std::uint32_t level = 0; level < 2 * WalkFolder::keptDepth; ++level) {
        const std::string name = "d" + std::to_string(level);
        path += "/" + name;
        folder =
            std::make_shared<const WalkFolder>(childFolder(folder, name, level, false, nested));
        ASSERT_EQ(folder->path(), path);
        ASSERT_EQ(folder->filePathOf("f").native(), path + "/f");
        ASSERT_EQ(folder->isNested("nested"), level == 69);
    }
}

}  // namespace
}  // namespace tallowmere
