#include "ScaleShapes.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>
#include <vector>

namespace tallowmere::bench {

namespace {

[[noreturn]] void fail(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

// A sparse file of `bytes` bytes named `name` in the open folder `folderFd`.
void writeFileAt(int folderFd, const std::string& name, std::int64_t bytes) {
    const int file =
        ::openat(folderFd, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (file < 0 || ::ftruncate(file, bytes) != 0) {
        fail("cannot write " + name);
    }
    ::close(file);
}

std::int64_t sizeOf(std::int64_t index) {
    return (index % 8 + 1) * 1024;
}

}  // namespace

SyntheticHomeSummary makeLinkedHome(const std::filesystem::path& root, std::int64_t files,
                                    std::uint64_t seed) {
    SyntheticHomeSummary made = makeSyntheticHome(root, files, seed);
    std::vector<std::filesystem::path> named;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
        if (entry.is_regular_file() && !entry.is_symlink()) {
            named.push_back(entry.path());
        }
    }
    for (const auto& path : named) {
        const auto second = path.native() + ".2";
        if (::link(path.c_str(), second.c_str()) != 0) {
            fail("cannot link " + second);
        }
        ++made.hardLinks;
    }
    return made;
}

SyntheticHomeSummary makeWideHome(const std::filesystem::path& root, std::int64_t files) {
    const auto folder = root / ".cache/huggingface/hub/wide";
    std::filesystem::create_directories(folder);
    const int folderFd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folderFd < 0) {
        fail("cannot open " + folder.native());
    }
    SyntheticHomeSummary made;
    made.folders = 3;
    for (std::int64_t index = 0; index < files; ++index) {
        writeFileAt(folderFd, "blob-" + std::to_string(index), sizeOf(index));
        ++made.files;
        made.bytes += sizeOf(index);
    }
    ::close(folderFd);
    return made;
}

SyntheticHomeSummary makeDeepHome(const std::filesystem::path& root, std::int64_t depth) {
    const auto top = root / ".codex/sessions";
    std::filesystem::create_directories(top);
    int folderFd = ::open(top.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    SyntheticHomeSummary made;
    // Made relative to the folder above, so the path never grows past what the system accepts.
    for (std::int64_t level = 0; level < depth && folderFd >= 0; ++level) {
        writeFileAt(folderFd, "f", sizeOf(level));
        ++made.files;
        made.bytes += sizeOf(level);
        if (::mkdirat(folderFd, "d", 0755) != 0) {
            fail("cannot make level " + std::to_string(level));
        }
        const int child = ::openat(folderFd, "d", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        ::close(folderFd);
        folderFd = child;
        ++made.folders;
    }
    if (folderFd < 0) {
        fail("cannot open a level of the chain");
    }
    ::close(folderFd);
    return made;
}

}  // namespace tallowmere::bench
