// bare-walk: as little as a metadata walk can do, so the scanner's times have a floor to be read
// against. It follows no links, stats only what d_type leaves open, and keeps no tree.
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <charconv>
#include <condition_variable>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace {

class Descriptor {
public:
    explicit Descriptor(int fd) : m_fd(fd) {}
    ~Descriptor() { ::close(m_fd); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const { return m_fd; }

private:
    int m_fd;
};

// A folder still to list, named inside a parent kept open until its last subfolder is opened:
// open descriptors then grow with the depth of the tree, not with the width of its folders.
struct PendingFolder {
    std::shared_ptr<const Descriptor> parent;  // null for the root, whose name is a path
    std::string name;
};

// Folders still to list, shared by every thread: whoever lists a folder pushes its subfolders,
// and an idle thread waits while another may still push more.
class FolderStack {
public:
    explicit FolderStack(PendingFolder root) { m_folders.push_back(std::move(root)); }

    // The next folder to list, or nothing once no folder is left and no thread is listing.
    std::optional<PendingFolder> take() {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return !m_folders.empty() || m_listing == 0; });
        if (m_folders.empty()) {
            return std::nullopt;
        }
        ++m_listing;
        PendingFolder folder = std::move(m_folders.back());
        m_folders.pop_back();
        return folder;
    }

    // Ends the listing of a folder from take(), handing over its subfolders.
    void finish(std::vector<PendingFolder>& subfolders) {
        std::unique_lock lock(m_mutex);
        for (PendingFolder& folder : subfolders) {
            m_folders.push_back(std::move(folder));
        }
        --m_listing;
        const bool wakeOthers = !subfolders.empty() || m_listing == 0;
        lock.unlock();
        if (wakeOthers) {
            m_changed.notify_all();
        }
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<PendingFolder> m_folders;
    int m_listing = 0;
};

// Files with more than one name, keyed across the whole walk so their blocks count once.
class LinkedFiles {
public:
    bool firstMeeting(const struct stat& status) {
        std::lock_guard lock(m_mutex);
        return m_seen.emplace(status.st_dev, status.st_ino).second;
    }

private:
    std::mutex m_mutex;
    std::set<std::pair<dev_t, ino_t>> m_seen;
};

struct Totals {
    std::uint64_t entries = 0;
    std::uint64_t bytes = 0;
    std::uint64_t unreadableFolders = 0;
};

// One thread's share of the walk; its totals are its own, so counting takes no lock.
class Walker {
public:
    Walker(FolderStack& folders, LinkedFiles& linkedFiles)
        : m_folders(folders), m_linkedFiles(linkedFiles), m_buffer(64 * 1024) {}

    void run() {
        while (std::optional<PendingFolder> folder = m_folders.take()) {
            std::vector<PendingFolder> subfolders;
            list(*folder, subfolders);
            m_folders.finish(subfolders);
        }
    }

    const Totals& totals() const { return m_totals; }

private:
    void list(const PendingFolder& folder, std::vector<PendingFolder>& subfolders) {
        const int parent = folder.parent ? folder.parent->get() : AT_FDCWD;
        const int fd =
            ::openat(parent, folder.name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (fd < 0) {
            ++m_totals.unreadableFolders;
            return;
        }
        const auto self = std::make_shared<const Descriptor>(fd);
        ssize_t length = 0;
        while ((length = ::getdents64(fd, m_buffer.data(), m_buffer.size())) > 0) {
            for (ssize_t offset = 0; offset < length;) {
                const auto* entry = reinterpret_cast<const dirent64*>(m_buffer.data() + offset);
                offset += entry->d_reclen;
                count(*entry, self, subfolders);
            }
        }
        if (length < 0) {
            ++m_totals.unreadableFolders;
        }
    }

    void count(const dirent64& entry, const std::shared_ptr<const Descriptor>& folder,
               std::vector<PendingFolder>& subfolders) {
        const std::string_view name = entry.d_name;
        if (name == "." || name == "..") {
            return;
        }
        ++m_totals.entries;
        if (entry.d_type == DT_LNK) {
            return;
        }
        if (entry.d_type == DT_DIR) {
            subfolders.push_back({folder, std::string(name)});
            return;
        }
        // Some file systems leave d_type unknown; the stat then tells folders and links apart.
        struct stat status {};
        if (::fstatat(folder->get(), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) != 0 ||
            S_ISLNK(status.st_mode)) {
            return;
        }
        if (S_ISDIR(status.st_mode)) {
            subfolders.push_back({folder, std::string(name)});
        } else if (status.st_nlink <= 1 || m_linkedFiles.firstMeeting(status)) {
            m_totals.bytes += static_cast<std::uint64_t>(status.st_blocks) * 512;
        }
    }

    FolderStack& m_folders;
    LinkedFiles& m_linkedFiles;
    std::vector<char> m_buffer;
    Totals m_totals;
};

struct Options {
    unsigned threads = 2;
    std::string folder;
};

std::optional<Options> parseOptions(int argc, char** argv) {
    Options options;
    int next = 1;
    if (argc == 4 && std::string_view(argv[1]) == "--threads") {
        const std::string_view text = argv[2];
        const auto [end, error] =
            std::from_chars(text.data(), text.data() + text.size(), options.threads);
        if (error != std::errc() || end != text.data() + text.size() || options.threads == 0) {
            return std::nullopt;
        }
        next = 3;
    }
    if (argc != next + 1) {
        return std::nullopt;
    }
    options.folder = argv[next];
    return options;
}

Totals walk(const Options& options) {
    FolderStack folders(PendingFolder{nullptr, options.folder});
    LinkedFiles linkedFiles;
    std::vector<Walker> walkers(options.threads, Walker(folders, linkedFiles));
    {
        std::vector<std::jthread> threads;
        for (Walker& walker : walkers) {
            threads.emplace_back([&walker] { walker.run(); });
        }
    }
    Totals sum;
    for (const Walker& walker : walkers) {
        sum.entries += walker.totals().entries;
        sum.bytes += walker.totals().bytes;
        sum.unreadableFolders += walker.totals().unreadableFolders;
    }
    return sum;
}

}  // namespace

int main(int argc, char** argv) {
    const std::optional<Options> options = parseOptions(argc, argv);
    if (!options) {
        std::fprintf(stderr, "usage: bare-walk [--threads N] DIR\n");
        return 2;
    }
    const Totals totals = walk(*options);
    std::printf("entries %llu, bytes %llu\n", static_cast<unsigned long long>(totals.entries),
                static_cast<unsigned long long>(totals.bytes));
    if (totals.unreadableFolders > 0) {
        std::fprintf(stderr, "bare-walk: %llu folders could not be read\n",
                     static_cast<unsigned long long>(totals.unreadableFolders));
        return 1;
    }
    return 0;
}
