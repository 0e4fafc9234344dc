#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <optional>

#include "ScopedVariable.h"
#include "TemporaryTree.h"
#include "platform/PathRules.h"
#include "platform/UserFolders.h"

namespace tallowmere {
namespace {

TEST(PathRules, StandardizesWithoutResolvingLinks) {
    EXPECT_EQ(PathRules::standardized("/opt/x/../y"), "/opt/y");
    EXPECT_EQ(PathRules::standardized("/a/./b//c/"), "/a/b/c");
    EXPECT_EQ(PathRules::standardized("/../a"), "/a");
    EXPECT_EQ(PathRules::standardized("/"), "/");
    EXPECT_EQ(PathRules::standardized("/a/b/../.."), "/");
    EXPECT_EQ(PathRules::standardized("/we\nird/\xff/.."), "/we\nird");

    EXPECT_TRUE(PathRules::isInside("/h/.cache/hf", "/h/.cache"));
    EXPECT_FALSE(PathRules::isInside("/h/.cache2", "/h/.cache"));
    EXPECT_FALSE(PathRules::isInside("/h/.cache", "/h/.cache"));
    EXPECT_TRUE(PathRules::isInside("/h", "/"));
    EXPECT_EQ(PathRules::lastComponent("/h/tools"), "tools");
}

TEST(UserFolders, HomeComesFromTheEnvironmentWithLinksResolvedOnce) {
    testing::TemporaryTree tree;
    tree.folder("var/home/dev");
    tree.symlink("var/home", "home");
    {
        testing::ScopedVariable home("HOME", (tree / "home/dev/").native());
        EXPECT_EQ(UserFolders::homeFolder(), tree / "var/home/dev");
    }
    {
        testing::ScopedVariable home("HOME", (tree / "missing/../var/./home/dev").native());
        EXPECT_EQ(UserFolders::homeFolder(), tree / "var/home/dev");
    }
    const passwd* entry = ::getpwuid(::getuid());
    ASSERT_NE(entry, nullptr);
    const char* resolved = ::realpath(entry->pw_dir, nullptr);
    const std::string expected = resolved ? resolved : entry->pw_dir;
    std::free(const_cast<char*>(resolved));
    for (const auto& value :
         {std::optional<std::string>(), std::optional<std::string>("relative/home")}) {
        testing::ScopedVariable home("HOME", value);
        EXPECT_EQ(UserFolders::homeFolder(), expected);
    }
}

}  // namespace
}  // namespace tallowmere
