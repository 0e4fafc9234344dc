#include <gtest/gtest.h>
#include <openssl/evp.h>
#include <pwd.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "ScopedVariable.h"
#include "TemporaryTree.h"
#include "platform/FileSystemError.h"
#include "platform/UserFolders.h"
#include "removal/RemovalErrors.h"
#include "removal/StorageLocationTrash.h"

namespace tallowmere {
namespace {

using testing::TemporaryTree;
using Paths = std::vector<std::filesystem::path>;

// How a snapshot ended, as one word, so outcomes can be compared in groups and passed back
// from a child process.
std::string outcome(const std::filesystem::path& folder, std::int64_t maxEntries = 100000,
                    const ScanOptions& options = {.stopToken = {}, .pauses = false}) {
    try {
        StorageLocationTrash::snapshot(folder, "Agent data", "", maxEntries, options);
        return "ok";
    } catch (const ReviewError& error) {
        switch (error.kind) {
            case ReviewError::Kind::broadLocation:
                return "broad";
            case ReviewError::Kind::unavailable:
                return "unavailable";
            case ReviewError::Kind::limit:
                return "limit";
        }
    } catch (const FileTrashError&) {
        return "changed";
    } catch (const FileSystemError& error) {
        return "errno " + std::to_string(error.code());
    } catch (const ScanCancelled&) {
        return "cancelled";
    }
    return "?";
}

std::string fingerprintOf(const std::filesystem::path& folder) {
    return StorageLocationTrash::snapshot(folder, "Cache", "", 100000, {{}, false}).fingerprint;
}

std::string identityText(const std::filesystem::path& path) {
    struct stat status;
    EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
    return std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino);
}

std::string field(const std::string& text) {
    return std::to_string(text.size()) + ":" + text;
}

std::string sha256Hex(const std::string& bytes) {
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    EXPECT_EQ(EVP_Digest(bytes.data(), bytes.size(), digest, &length, EVP_sha256(), nullptr), 1);
    std::string text;
    for (unsigned int index = 0; index < length; ++index) {
        constexpr char digits[] = "0123456789abcdef";
        text += digits[digest[index] >> 4];
        text += digits[digest[index] & 0xF];
    }
    return text;
}

TEST(LocationSnapshot, OutermostKeepsTheShortestDistinctFolders) {
    EXPECT_EQ(StorageLocationTrash::outermost({"/a/b", "/a", "/a/b/c", "/ab", "/a"}),
              (Paths{"/a", "/ab"}));
    EXPECT_EQ(StorageLocationTrash::outermost({"/a/bc", "/a/./b/", "/a/b", "/a/x/../b/d"}),
              (Paths{"/a/b", "/a/bc"}));
    // Lengths count characters: "/éé" has three, "/abc" four, though "/éé" has more bytes.
    EXPECT_EQ(StorageLocationTrash::outermost({"/abc", "/\xC3\xA9\xC3\xA9", "/b", "/a"}),
              (Paths{"/a", "/b", "/\xC3\xA9\xC3\xA9", "/abc"}));
    EXPECT_TRUE(StorageLocationTrash::outermost({}).empty());
}

TEST(LocationSnapshot, RefusesHomeSystemAndShallowFolders) {
    TemporaryTree tree;
    const auto home = tree.folder("home/me");
    const testing::ScopedVariable fakeHome("HOME", home.native());
    tree.folder("home/me/.local/share/tool");
    tree.folder("home/me/Library/Caches/tool");
    tree.file("home/me/plain-file");

    for (const auto& broad :
         Paths{"/", "/Users", "/Volumes", "/opt", "/usr/share/x", "/var/lib/x", "/etc/x",
               "/System/Library/x", "/root", "/home", home, home / "Library", home / ".config",
               home / ".local/share", home / "Library/Application Support", home.parent_path(),
               tree.root()}) {
        EXPECT_EQ(outcome(broad), "broad") << broad;
    }
    const passwd* superuser = ::getpwuid(0);
    ASSERT_NE(superuser, nullptr);
    const auto homes = UserFolders::passwordDatabaseHomes();
    EXPECT_NE(std::ranges::find(homes, std::filesystem::path(superuser->pw_dir)), homes.end());
    for (const auto& other : homes) {
        EXPECT_EQ(outcome(other), "broad") << other;
        EXPECT_EQ(outcome(other.parent_path()), "broad") << other;
    }
    EXPECT_EQ(outcome(home / ".local/share/tool"), "ok");
    EXPECT_EQ(outcome(home / "Library/Caches/tool"), "ok");
    EXPECT_EQ(outcome(home / "plain-file"), "broad");
    if (!std::filesystem::exists("/opt/tool")) {
        EXPECT_EQ(outcome("/opt/tool"), "errno " + std::to_string(ENOENT));
    }
}

TEST(LocationSnapshot, RefusesFoldersReachedThroughLinksAndVolumes) {
    TemporaryTree tree;
    tree.file("real/data/x");
    tree.symlink(tree.root() / "real", "linked");
    tree.symlink(tree.root() / "real/data", "direct");
    EXPECT_EQ(outcome(tree / "linked/data"), "changed");
    EXPECT_EQ(outcome(tree / "direct"), "changed");
    EXPECT_EQ(outcome(tree / "real/data"), "ok");

    tree.file("outer/a");
    tree.folder("outer/volume");
    const auto outcomes = testing::runInMountNamespace([&tree] {
        if (::mount("none", (tree / "outer/volume").c_str(), "tmpfs", 0, nullptr) != 0) {
            return std::string("cannot mount");
        }
        return outcome(tree / "outer/volume") + " " + outcome(tree / "outer");
    });
    if (!outcomes) {
        GTEST_SKIP() << "this system does not let the test mount a file system";
    }
    EXPECT_EQ(*outcomes, "broad unavailable");
}

TEST(LocationSnapshot, RecordsTheFolderFirstThenEveryItemUnfollowed) {
    TemporaryTree tree;
    const std::string oddName = "bad\nname\xFF";
    tree.file("t/" + oddName, 3);
    tree.folder("t/d");
    tree.symlink("nowhere", "t/l");
    testing::setModified(tree / ("t/" + oddName), 700000000.125);
    testing::setModified(tree / "t/d", 700000002.25);
    testing::setModified(tree / "t/l", 700000003.5);
    testing::setModified(tree / "t", 700000001);

    const auto folder = tree / "t";
    const auto snapshot = StorageLocationTrash::snapshot(folder, "Cache", "Why", 3, {{}, false});
    std::vector<std::string> records = {
        field("") + field("directory") + field(identityText(folder)) + field("700000001.0") +
            field("-1"),
        field("d") + field("directory") + field(identityText(tree / "t/d")) +
            field("700000002.25") + field("-1"),
        field("l") + field("link") + field(identityText(tree / "t/l")) + field("700000003.5") +
            field("7"),
        field(oddName) + field("file") + field(identityText(tree / ("t/" + oddName))) +
            field("700000000.125") + field("3")};
    EXPECT_TRUE(records.front().starts_with("0:9:directory"));
    std::ranges::sort(records);
    std::string joined;
    for (const auto& record : records) {
        joined += record;
    }
    EXPECT_EQ(snapshot.fingerprint, sha256Hex(joined));
    EXPECT_EQ(snapshot.url, folder);
    EXPECT_EQ(snapshot.category, "Cache");
    EXPECT_EQ(snapshot.detail, "Why");
    EXPECT_EQ(snapshot.itemCount, 3);
    EXPECT_EQ(snapshot.modified, 700000001);
    EXPECT_EQ(snapshot.fileIdentity, identityText(folder));
    EXPECT_EQ(snapshot.allocatedBytes, testing::allocatedBytesOf(folder) +
                                           testing::allocatedBytesOf(tree / "t/d") +
                                           testing::allocatedBytesOf(tree / "t/l") +
                                           testing::allocatedBytesOf(tree / ("t/" + oddName)));
    EXPECT_EQ(snapshot.id(), folder.native());
}

TEST(LocationSnapshot, StopsAfterMaxEntriesItems) {
    TemporaryTree tree;
    tree.file("f/a/b/c");
    tree.file("f/a/d");
    tree.symlink("/", "f/root-link");  // counted once, never followed
    EXPECT_EQ(outcome(tree / "f", 5), "ok");
    EXPECT_EQ(outcome(tree / "f", 4), "limit");
    tree.file("f/a/b/e");
    EXPECT_EQ(outcome(tree / "f", 5), "limit");
    EXPECT_EQ(outcome(tree / "f", 6), "ok");
}

TEST(LocationSnapshot, RecordsAnyDepthWithFewDescriptors) {
    TemporaryTree tree;
    std::string folder = "f";
    for (int level = 0; level < 200; ++level) {
        tree.file(folder + "/a");
        if (level == 30) {
            tree.file(folder + "/z/after");  // met after the chain below it
        }
        folder += "/d";
    }
    const auto wanted = fingerprintOf(tree / "f");
    rlimit limit{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
    const rlimit small{40, limit.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &small), 0);
    const auto outcomeThere = outcome(tree / "f", 100000);
    const auto fingerprint = outcomeThere == "ok" ? fingerprintOf(tree / "f") : "";
    ::setrlimit(RLIMIT_NOFILE, &limit);
    EXPECT_EQ(outcomeThere, "ok");
    EXPECT_EQ(fingerprint, wanted);
}

TEST(LocationSnapshot, FingerprintChangesWithAnyChangeBelowTheFolder) {
    TemporaryTree tree;
    tree.file("f/sub/a", 10, 600000000);
    tree.file("f/b", 5, 600000000);
    const auto folder = tree / "f";
    const std::string reviewed = fingerprintOf(folder);
    EXPECT_EQ(fingerprintOf(folder), reviewed);
    EXPECT_EQ(reviewed.size(), 64U);
    EXPECT_EQ(reviewed.find_first_not_of("0123456789abcdef"), std::string::npos);

    testing::setModified(tree / "f/sub/a", 600000000.5);
    EXPECT_NE(fingerprintOf(folder), reviewed);
    testing::setModified(tree / "f/sub/a", 600000000);
    EXPECT_EQ(fingerprintOf(folder), reviewed);

    const auto subTime = std::filesystem::last_write_time(tree / "f/sub");
    tree.file("f/sub/empty", 0);
    std::filesystem::last_write_time(tree / "f/sub", subTime);
    EXPECT_NE(fingerprintOf(folder), reviewed);
    std::filesystem::remove(tree / "f/sub/empty");
    std::filesystem::last_write_time(tree / "f/sub", subTime);
    EXPECT_EQ(fingerprintOf(folder), reviewed);

    std::filesystem::rename(tree / "f/sub/a", tree / "f/sub/renamed");
    std::filesystem::last_write_time(tree / "f/sub", subTime);
    EXPECT_NE(fingerprintOf(folder), reviewed);
}

TEST(LocationSnapshot, UnreadableItemsFailTheSnapshot) {
    TemporaryTree tree;
    tree.file("unlisted/closed/hidden");
    tree.file("unstatable/unsearchable/x");
    ::chmod((tree / "unlisted/closed").c_str(), 0);
    ::chmod((tree / "unstatable/unsearchable").c_str(), 0444);
    const auto outcomes = testing::runUnprivileged(tree.root(), [&tree] {
        return outcome(tree / "unlisted") + " " + outcome(tree / "unstatable");
    });
    ASSERT_TRUE(outcomes.has_value());
    EXPECT_EQ(*outcomes, "unavailable errno " + std::to_string(EACCES));
}

TEST(LocationSnapshot, StopsWhenCancelled) {
    TemporaryTree tree;
    tree.file("f/a");
    std::stop_source stop;
    stop.request_stop();
    EXPECT_EQ(outcome(tree / "f", 100000, {stop.get_token(), true}), "cancelled");
}

}  // namespace
}  // namespace tallowmere
