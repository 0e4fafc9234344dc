#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <optional>

#include "TemporaryTree.h"
#include "platform/PathRules.h"
#include "platform/UserFolders.h"

namespace tallowmere {
namespace {

// Sets HOME (or removes it) for one test and puts the old value back afterwards.
class HomeVariable {
public:
    explicit HomeVariable(const std::optional<std::string>& value) {
        if (const char* old = std::getenv("HOME")) {
            m_old = old;
        }
        value ? ::setenv("HOME", value->c_str(), 1) : ::unsetenv("HOME");
    }
    ~HomeVariable() { m_old ? ::setenv("HOME", m_old->c_str(), 1) : ::unsetenv("HOME"); }

private:
    std::optional<std::string> m_old;
};

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
        HomeVariable home((tree / "home/dev/").native());
        EXPECT_EQ(UserFolders::homeFolder(), tree / "var/home/dev");
    }
    {
        HomeVariable home((tree / "missing/../var/./home/dev").native());
        EXPECT_EQ(UserFolders::homeFolder(), tree / "var/home/dev");
    }
    const passwd* entry = ::getpwuid(::getuid());
    ASSERT_NE(entry, nullptr);
    const char* resolved = ::realpath(entry->pw_dir, nullptr);
    const std::string expected = resolved ? resolved : entry->pw_dir;
    std::free(const_cast<char*>(resolved));
    for (const auto& value :
         {std::optional<std::string>(), std::optional<std::string>("relative/home")}) {
        HomeVariable home(value);
        EXPECT_EQ(UserFolders::homeFolder(), expected);
    }
}

}  // namespace
}  // namespace tallowmere
