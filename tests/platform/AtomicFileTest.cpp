#include "platform/AtomicFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <system_error>

#include "TemporaryTree.h"

namespace tallowmere {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

// Lowers the file size limit so that writing more fails with EFBIG, a write failure that needs
// no full disk; puts the limit and SIGXFSZ's handling back afterwards.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) {
        ::getrlimit(RLIMIT_FSIZE, &m_old);
        m_oldHandler = std::signal(SIGXFSZ, SIG_IGN);
        const rlimit lowered{bytes, m_old.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &lowered);
    }
    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &m_old);
        std::signal(SIGXFSZ, m_oldHandler);
    }

private:
    rlimit m_old;
    void (*m_oldHandler)(int);
};

std::string messageOfWrite(const std::filesystem::path& file, const std::string& bytes) {
    try {
        AtomicFile::write(file, bytes);
    } catch (const std::system_error& error) {
        return error.what();
    }
    return "no error";
}

std::size_t entriesIn(const std::filesystem::path& folder) {
    return std::distance(std::filesystem::directory_iterator(folder), {});
}

TEST(AtomicFile, WritesThroughNewFoldersAndReplacesWholeFiles) {
    testing::TemporaryTree tree;
    const auto file = tree / "a/b/summary.json";
    AtomicFile::write(file, "first, longer content");
    AtomicFile::write(file, "second\n\xFF");
    EXPECT_EQ(AtomicFile::readWholeFile(file, 8), "second\n\xFF");
    EXPECT_EQ(AtomicFile::readWholeFile(file, 7), std::nullopt);
    EXPECT_EQ(entriesIn(tree / "a/b"), 1u);

    AtomicFile::write(file, "");
    EXPECT_EQ(AtomicFile::readWholeFile(file, 0), "");
    EXPECT_EQ(AtomicFile::readWholeFile(tree / "a/missing", 100), std::nullopt);
    EXPECT_EQ(AtomicFile::readWholeFile(tree / "a", 100), std::nullopt);
    ASSERT_EQ(::mkfifo((tree / "fifo").c_str(), 0600), 0);
    EXPECT_EQ(AtomicFile::readWholeFile(tree / "fifo", 100), std::nullopt);
}

TEST(AtomicFile, FailedWritesNameThePathAndKeepTheOldFile) {
    testing::TemporaryTree tree;
    const auto blocker = tree.file("caches", 3);
    EXPECT_THAT(messageOfWrite(blocker / "Tallowmere/summary.json", "x"),
                AllOf(HasSubstr("Cannot create the folder " + (blocker / "Tallowmere").native()),
                      HasSubstr("Not a directory")));

    const auto file = tree / "kept/summary.json";
    AtomicFile::write(file, "old");
    {
        FileSizeLimit limit(4);
        EXPECT_THAT(messageOfWrite(file, "longer than four bytes"),
                    AllOf(HasSubstr("Cannot write " + file.native()), HasSubstr("File too large")));
    }
    EXPECT_EQ(AtomicFile::readWholeFile(file, 100), "old");
    EXPECT_EQ(entriesIn(tree / "kept"), 1u);

    AtomicFile::write(tree / "kept/folder/inside", "x");
    EXPECT_THAT(
        messageOfWrite(tree / "kept/folder", "x"),
        HasSubstr("Cannot move the new content into place at " + (tree / "kept/folder").native()));
    EXPECT_EQ(entriesIn(tree / "kept"), 2u);
}

}  // namespace
}  // namespace tallowmere
