#include "platform/Deletion.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <thread>

#include "TemporaryTree.h"
#include "platform/EntryStatus.h"
#include "platform/FileSystemError.h"
#include "platform/FolderDescriptors.h"

namespace tallowmere {
namespace {

namespace fs = std::filesystem;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using testing::TemporaryTree;

constexpr char linkFound[] = "A symbolic link was found where a folder was expected.";
constexpr char permissionDenied[] = "You don’t have permission to access it.";

std::string failureOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const FileSystemError& error) {
        return error.what();
    }
    return "no error";
}

// Every path below `folder`, relative to it, links not followed.
std::set<std::string> contentOf(const fs::path& folder) {
    std::set<std::string> paths;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        paths.insert(entry.path().lexically_relative(folder).native());
    }
    return paths;
}

// A folder outside the tree under deletion that a followed link would expose.
fs::path makeVictim(const TemporaryTree& tree) {
    for (int index = 0; index < 10; ++index) {
        tree.file("victim/v" + std::to_string(index));
        tree.file("victim/inner/w" + std::to_string(index));
    }
    return tree / "victim";
}

const std::set<std::string> victimContent = [] {
    std::set<std::string> paths{"inner"};
    for (int index = 0; index < 10; ++index) {
        paths.insert("v" + std::to_string(index));
        paths.insert("inner/w" + std::to_string(index));
    }
    return paths;
}();

// Deletes `folder` and everything in it, as the removal of a checked folder does; answers how
// many items stayed because they turned up during the walk.
std::size_t removeFolder(const fs::path& folder, const Deletion::BeforeOpen& beforeOpen = {}) {
    const auto parent = openFolderWithoutLinks(folder.parent_path());
    EntryStatus seen;
    if (!readEntryStatus(parent.get(), folder.filename().c_str(), seen)) {
        throw FileSystemError::fromErrno(errno);
    }
    const auto everything = [](std::string_view, const EntryStatus&) { return true; };
    return Deletion::removeFolderAt(parent.get(), folder.filename(), seen, everything, beforeOpen);
}

// Nests `depth` folders of 200-byte names below `folder`, a file in each: 25 are deeper than
// PATH_MAX.
void makeDeepChain(const fs::path& folder, int depth = 25) {
    const std::string longName(200, 'n');
    int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (int level = 0; level < depth; ++level) {
        ::close(::openat(fd, "file", O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
        ::mkdirat(fd, longName.c_str(), 0700);
        const int next = ::openat(fd, longName.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        ::close(fd);
        fd = next;
    }
    ::close(fd);
}

TEST(Deletion, RemovesAWholeTreeWithoutFollowingLinks) {
    TemporaryTree tree;
    const auto victim = makeVictim(tree);
    tree.file("doomed/a/b/c/deep.bin", 3);
    tree.file("doomed/we\nird \xff name");
    tree.folder("doomed/empty");
    tree.symlink(victim.native(), "doomed/folder-link");
    tree.symlink((victim / "v0").native(), "doomed/a/file-link");
    tree.hardLink("victim/v1", "doomed/a/hard-link");
    ::mkfifo((tree / "doomed/a/fifo").c_str(), 0600);
    makeDeepChain(tree.folder("doomed/deep"));

    removeFolder(tree / "doomed");

    EXPECT_FALSE(fs::exists(fs::symlink_status(tree / "doomed")));
    EXPECT_EQ(contentOf(victim), victimContent);
}

TEST(Deletion, RemovesAnyDepthWithFewDescriptors) {
    TemporaryTree tree;
    makeDeepChain(tree.folder("doomed"), 300);
    tree.file("doomed/later/file");  // its listing may come after the chain's
    rlimit limit{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
    const rlimit small{40, limit.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &small), 0);
    std::string failure;
    try {
        removeFolder(tree / "doomed");
    } catch (const FileSystemError& error) {
        failure = error.what();
    }
    ::setrlimit(RLIMIT_NOFILE, &limit);
    EXPECT_EQ(failure, "");
    EXPECT_FALSE(fs::exists(fs::symlink_status(tree / "doomed")));
}

TEST(Deletion, RefusesWhatIsNotARealFolderAndRemovesFilesWithoutFollowing) {
    TemporaryTree tree;
    const auto victim = makeVictim(tree);
    tree.symlink(victim.native(), "folder-link");
    tree.symlink((victim / "v0").native(), "file-link");
    tree.symlink(tree.root().native(), "through");
    const auto file = tree.file("plain");

    EXPECT_EQ(failureOf([&] { removeFolder(tree / "folder-link"); }), linkFound);
    EXPECT_EQ(failureOf([&] { removeFolder(tree / "through/victim"); }), linkFound);
    EXPECT_EQ(failureOf([&] { removeFolder(file); }), "A part of the path is not a folder.");
    EXPECT_EQ(failureOf([&] { Deletion::removeFile(victim); }), "It is a folder, not a file.");
    EXPECT_EQ(failureOf([&] { Deletion::removeFile(tree / "through/plain"); }), linkFound);
    EXPECT_EQ(failureOf([&] { Deletion::removeFile(tree / "missing"); }),
              "The file doesn’t exist.");
    EXPECT_TRUE(fs::exists(file));

    Deletion::removeFile(tree / "file-link");
    Deletion::removeFile(file);

    EXPECT_FALSE(fs::exists(fs::symlink_status(tree / "file-link")));
    EXPECT_FALSE(fs::exists(file));
    EXPECT_EQ(contentOf(victim), victimContent);
}

TEST(Deletion, SkipsAFolderSwappedJustBeforeItIsOpened) {
    TemporaryTree tree;
    const auto victim = makeVictim(tree);
    tree.file("doomed/a/sub/inside");
    tree.file("doomed/a/other");
    tree.file("intruder/kept");
    std::string swapFor = "link";
    const auto swap = [&](int parentFd, const char* name) {
        if (std::string(name) != "sub" || swapFor.empty()) {
            return;
        }
        ::renameat(parentFd, "sub", parentFd, "sub.moved");
        if (swapFor == "link") {
            ::symlinkat(victim.c_str(), parentFd, "sub");
        } else {
            ::renameat(AT_FDCWD, (tree / "intruder").c_str(), parentFd, "sub");
        }
        swapFor.clear();
    };

    EXPECT_EQ(failureOf([&] { removeFolder(tree / "doomed", swap); }),
              std::string("a/sub: ") + linkFound);
    EXPECT_EQ(contentOf(victim), victimContent);
    EXPECT_TRUE(fs::is_symlink(tree / "doomed/a/sub"));
    EXPECT_EQ(contentOf(tree / "doomed"),
              (std::set<std::string>{"a", "a/sub", "a/sub.moved", "a/sub.moved/inside"}));

    fs::remove_all(tree / "doomed");
    tree.file("doomed/a/sub/inside");
    swapFor = "folder";
    EXPECT_EQ(failureOf([&] { removeFolder(tree / "doomed", swap); }),
              "a/sub: It was replaced while it was being removed, so it was skipped.");
    EXPECT_EQ(
        contentOf(tree / "doomed"),
        (std::set<std::string>{"a", "a/sub", "a/sub/kept", "a/sub.moved", "a/sub.moved/inside"}));
}

TEST(Deletion, NeverLosesAFileBehindALinkSwappedInDuringTheWalk) {
    TemporaryTree tree;
    const auto victim = makeVictim(tree);
    constexpr int pairs = 8;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    for (int round = 0; round < 2000 && std::chrono::steady_clock::now() < deadline; ++round) {
        const auto top = "round" + std::to_string(round);
        for (int pair = 0; pair < pairs; ++pair) {
            const auto folder = top + "/sub" + std::to_string(pair);
            for (int index = 0; index < 5; ++index) {
                tree.file(folder + "/f" + std::to_string(index));
                tree.file(folder + "/deeper/g" + std::to_string(index));
            }
            tree.symlink(victim.native(), top + "/spare" + std::to_string(pair));
        }
        std::atomic<bool> stop = false;
        std::atomic<int> swaps = 0;
        // Swaps each folder with its link, and puts back a link the walk removed, so that a
        // link keeps turning up where the walk last saw a folder.
        std::jthread swapper([&] {
            while (!stop) {
                for (int pair = 0; pair < pairs; ++pair) {
                    const auto sub = tree / (top + "/sub" + std::to_string(pair));
                    const auto spare = tree / (top + "/spare" + std::to_string(pair));
                    if (::renameat2(AT_FDCWD, sub.c_str(), AT_FDCWD, spare.c_str(),
                                    RENAME_EXCHANGE) == 0) {
                        ++swaps;
                    } else {
                        ::symlink(victim.c_str(), spare.c_str());
                    }
                }
            }
        });
        while (swaps == 0) {
            std::this_thread::yield();
        }
        failureOf([&] { removeFolder(tree / top); });
        stop = true;
        swapper.join();
        ASSERT_EQ(contentOf(victim), victimContent) << "round " << round;
    }
}

TEST(Deletion, DeletesOnlyWhatItMayAndKeepsWhatAppearsMeanwhile) {
    TemporaryTree tree;
    tree.file("doomed/keep/precious");
    tree.file("doomed/keep/plain");
    tree.file("doomed/go/file");
    tree.file("doomed/top-file");
    const auto parent = openFolderWithoutLinks(tree.root());
    EntryStatus seen;
    ASSERT_TRUE(readEntryStatus(parent.get(), "doomed", seen));
    std::set<std::string> offered;
    const auto removable = [&](std::string_view path, const EntryStatus&) {
        offered.insert(std::string(path));
        return path != "keep/precious";
    };
    EXPECT_EQ(Deletion::removeFolderAt(parent.get(), "doomed", seen, removable), 1u);
    EXPECT_EQ(contentOf(tree / "doomed"), (std::set<std::string>{"keep", "keep/precious"}));
    EXPECT_EQ(offered, (std::set<std::string>{"keep", "keep/precious", "keep/plain", "go",
                                              "go/file", "top-file"}));

    // A file that turns up in a folder already listed, as another process would add it, stays.
    tree.file("again/sub/file");
    const auto addLate = [&](int, const char*) { tree.file("again/late"); };
    EXPECT_EQ(removeFolder(tree / "again", addLate), 1u);
    EXPECT_EQ(contentOf(tree / "again"), (std::set<std::string>{"late"}));
}

TEST(Deletion, ReportsWhatItCannotRemoveAndRemovesTheRest) {
    TemporaryTree tree;
    const auto report = testing::runUnprivileged(tree.root(), [&tree] {
        tree.file("one/locked/secret");
        tree.file("one/kept-away");
        tree.file("two/read-only/file");
        tree.file("two/other/file");
        tree.file("both/locked/secret");
        tree.file("both/read-only/file");
        for (const auto* folder : {"one/locked", "both/locked"}) {
            ::chmod((tree / folder).c_str(), 0);
        }
        for (const auto* folder : {"two/read-only", "both/read-only"}) {
            ::chmod((tree / folder).c_str(), 0500);
        }
        std::string lines;
        for (const auto* folder : {"one", "two", "both"}) {
            lines += failureOf([&] { removeFolder(tree / folder); }) + "\n";
        }
        for (const auto* path : {"one/locked", "one/kept-away", "two/read-only/file", "two/other",
                                 "both/locked", "both/read-only/file"}) {
            lines += std::string(path) + (fs::exists(tree / path) ? " stays\n" : " gone\n");
        }
        return lines;
    });
    ASSERT_TRUE(report.has_value()) << "the unprivileged user cannot reach the temporary folder";

    EXPECT_THAT(*report, HasSubstr(std::string("locked: ") + permissionDenied + "\n" +
                                   "read-only/file: " + permissionDenied + "\n"));
    EXPECT_THAT(*report, HasSubstr(" 2 items could not be removed.\n"));
    EXPECT_THAT(*report, EndsWith("one/locked stays\none/kept-away gone\n"
                                  "two/read-only/file stays\ntwo/other gone\n"
                                  "both/locked stays\nboth/read-only/file stays\n"));
}

TEST(Deletion, NeverEntersAnotherMount) {
    TemporaryTree tree;
    const auto victim = makeVictim(tree);
    const auto report = testing::runInMountNamespace([&] {
        tree.file("doomed/a/file");
        tree.folder("doomed/a/mounted");
        ::mount("tmpfs", (tree / "doomed/a/mounted").c_str(), "tmpfs", 0, "mode=0755");
        tree.file("doomed/a/mounted/on-tmpfs");
        tree.folder("doomed/bound");
        ::mount(victim.c_str(), (tree / "doomed/bound").c_str(), nullptr, MS_BIND, nullptr);
        std::string lines = failureOf([&] { removeFolder(tree / "doomed"); }) + "\n";
        lines += fs::exists(tree / "doomed/a/mounted/on-tmpfs") ? "tmpfs kept " : "tmpfs emptied ";
        lines += fs::exists(tree / "doomed/a/file") ? "file kept " : "file gone ";
        return lines + (contentOf(victim) == victimContent ? "victim intact" : "victim damaged");
    });
    if (!report) {
        GTEST_SKIP() << "this system does not allow mounting in a private namespace";
    }

    const std::string notEntered = "It is another mounted file system, so it was not entered.";
    EXPECT_THAT(*report, ::testing::AnyOf(::testing::StartsWith("a/mounted: " + notEntered),
                                          ::testing::StartsWith("bound: " + notEntered)));
    EXPECT_THAT(*report, EndsWith(" 2 items could not be removed.\n"
                                  "tmpfs kept file gone victim intact"));
}

}  // namespace
}  // namespace tallowmere
