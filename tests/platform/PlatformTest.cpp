#include <gtest/gtest.h>
#include <poll.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <optional>

#include "ScopedVariable.h"
#include "TemporaryTree.h"
#include "platform/PathRules.h"
#include "platform/UserFolders.h"
#include "platform/WakeTimer.h"

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

bool readableWithin(int fd, int milliseconds) {
    pollfd watched{fd, POLLIN, 0};
    return ::poll(&watched, 1, milliseconds) == 1;
}

TEST(WakeTimer, FiresOnceAfterItsDelayUntilArmedAgain) {
    using namespace std::chrono_literals;
    WakeTimer timer;
    EXPECT_FALSE(readableWithin(timer.fd(), 50));  // not armed
    timer.arm(20ms);
    EXPECT_TRUE(readableWithin(timer.fd(), 5000));
    timer.acknowledge();
    EXPECT_FALSE(readableWithin(timer.fd(), 100));  // one-shot
    timer.arm(0ns);                                 // at once, not disarmed
    EXPECT_TRUE(readableWithin(timer.fd(), 5000));
    timer.acknowledge();
    timer.arm(1h);
    timer.arm(10ms);  // replaces the earlier arming
    EXPECT_TRUE(readableWithin(timer.fd(), 5000));
}

}  // namespace
}  // namespace tallowmere
