// race-adversary: the other process in bench/removal-races. While tallowmere-cli removes or
// restores an item, it swaps that item with a victim in a tight loop, or adds files inside it, so
// that every gap between a check and the call that acts on it gets tried. Plain POSIX and Linux
// calls only; it uses nothing of the core, so it races the CLI as any program could.
//
//   race-adversary [--seconds S] folder-swap REVIEWED VICTIM
//   race-adversary [--seconds S] parent-swap PARENT DECOY
//   race-adversary [--seconds S] file-swap REVIEWED VICTIM
//   race-adversary [--seconds S] restore-swap TRASHED TRASH_VICTIM PARENT DECOY
//   race-adversary [--seconds S] [--delay-us D] [--gap-us G] [--max-files N] [--seed X]
//                  file-added FOLDER
//
// The swap modes exchange each pair of paths with renameat2(RENAME_EXCHANGE), pair after pair,
// without pause. file-added waits a random time up to D microseconds, then tries to make N files
// (64 by default) G microseconds apart (100 by default), in FOLDER and in each folder directly
// inside it, by turns by path, through a descriptor opened beforehand and relative to the
// working folder, which is FOLDER. Each file holds the line "tallowmere-race-victim added-ID".
//
// It prints "ready" once set up and runs until SIGTERM, SIGINT or S seconds (60 by default).
// Then a swap mode exchanges once more every pair it left swapped and prints
// "exchanges N left-swapped K"; file-added prints "victim ID early" for each file made while
// FOLDER was still in its place afterwards, and "victim ID late" for each made when it no
// longer was. "done" ends the output.
#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

volatile sig_atomic_t stopRequested = 0;

void requestStop(int) {
    stopRequested = 1;
}

void installStopHandlers() {
    struct sigaction action {};
    action.sa_handler = requestStop;
    sigemptyset(&action.sa_mask);
    ::sigaction(SIGTERM, &action, nullptr);
    ::sigaction(SIGINT, &action, nullptr);
}

std::int64_t nowMicroseconds() {
    return std::chrono::duration_cast<std::chrono::microseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

class Deadline {
public:
    explicit Deadline(double seconds)
        : m_end(nowMicroseconds() + static_cast<std::int64_t>(seconds * 1e6)) {}

    bool passed() const { return nowMicroseconds() >= m_end; }

private:
    std::int64_t m_end;
};

bool keepGoing(const Deadline& deadline) {
    return stopRequested == 0 && !deadline.passed();
}

// Sleeps in slices of at most a millisecond, so that a stop request ends a long pause soon.
void pauseFor(std::int64_t microseconds) {
    for (std::int64_t left = microseconds; left > 0 && stopRequested == 0; left -= 1000) {
        std::this_thread::sleep_for(std::chrono::microseconds(std::min<std::int64_t>(left, 1000)));
    }
}

void say(const std::string& line) {
    std::fputs((line + "\n").c_str(), stdout);
    std::fflush(stdout);
}

class Descriptor {
public:
    explicit Descriptor(int fd) : m_fd(fd) {}
    Descriptor(Descriptor&& other) noexcept : m_fd(other.m_fd) { other.m_fd = -1; }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (m_fd >= 0) {
            ::close(m_fd);
        }
    }

    int get() const { return m_fd; }

private:
    int m_fd;
};

struct Settings {
    double seconds = 60;
    std::int64_t delayMicroseconds = 0;
    std::int64_t gapMicroseconds = 100;
    long maxFiles = 64;
    unsigned long seed = static_cast<unsigned long>(nowMicroseconds()) ^ ::getpid();
    std::string mode;
    std::vector<std::string> paths;
};

struct SwapPair {
    std::string first;
    std::string second;
    unsigned long exchanges = 0;
};

bool exchange(const SwapPair& pair) {
    return ::renameat2(AT_FDCWD, pair.first.c_str(), AT_FDCWD, pair.second.c_str(),
                       RENAME_EXCHANGE) == 0;
}

int runSwaps(std::vector<SwapPair> pairs, const Deadline& deadline) {
    say("ready");
    for (unsigned long turn = 0; stopRequested == 0; ++turn) {
        // Reading the clock every turn would slow the swapping down.
        if (turn % 1024 == 0 && deadline.passed()) {
            break;
        }
        for (auto& pair : pairs) {
            pair.exchanges += exchange(pair) ? 1 : 0;
        }
    }
    unsigned long total = 0;
    unsigned long leftSwapped = 0;
    for (const auto& pair : pairs) {
        total += pair.exchanges;
        // Left swapped, each item would be judged under the other's name.
        if (pair.exchanges % 2 == 1 && !exchange(pair)) {
            ++leftSwapped;
        }
    }
    say("exchanges " + std::to_string(total) + " left-swapped " + std::to_string(leftSwapped));
    return 0;
}

// One folder that files are added to, reachable three ways.
struct TargetFolder {
    std::string path;
    std::string fromWorkingFolder;  // "" for FOLDER itself, "name/" for a folder inside it
    Descriptor fd;
};

enum class Route { path, descriptor, workingFolder };

// FOLDER and each folder directly inside it, opened now, before the CLI starts.
std::vector<TargetFolder> openTargets(const std::string& top) {
    std::vector<TargetFolder> targets;
    targets.push_back(
        {top, "", Descriptor(::open(top.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))});
    const int topFd = targets[0].fd.get();
    DIR* listing = topFd >= 0 ? ::fdopendir(::fcntl(topFd, F_DUPFD_CLOEXEC, 0)) : nullptr;
    if (listing == nullptr) {
        std::perror(top.c_str());
        std::exit(1);
    }
    while (const dirent* entry = ::readdir(listing)) {
        const std::string_view name = entry->d_name;
        if (entry->d_type != DT_DIR || name == "." || name == "..") {
            continue;
        }
        const int fd =
            ::openat(topFd, entry->d_name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (fd >= 0) {
            targets.push_back({top + "/" + entry->d_name, std::string(name) + "/", Descriptor(fd)});
        }
    }
    ::closedir(listing);
    return targets;
}

int openNew(const TargetFolder& folder, Route route, const std::string& name) {
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    switch (route) {
        case Route::path:
            return ::open((folder.path + "/" + name).c_str(), flags, 0644);
        case Route::descriptor:
            return ::openat(folder.fd.get(), name.c_str(), flags, 0644);
        case Route::workingFolder:
            return ::open((folder.fromWorkingFolder + name).c_str(), flags, 0644);
    }
    return -1;
}

bool writeMarker(int fd, unsigned long id) {
    const std::string text = "tallowmere-race-victim added-" + std::to_string(id) + "\n";
    const bool written = ::write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    return ::close(fd) == 0 && written;
}

bool sameItem(const std::string& path, const struct stat& expected) {
    struct stat now {};
    return ::lstat(path.c_str(), &now) == 0 && now.st_dev == expected.st_dev &&
           now.st_ino == expected.st_ino;
}

int runFileAdded(const Settings& settings, const Deadline& deadline) {
    const std::string& top = settings.paths[0];
    const std::vector<TargetFolder> targets = openTargets(top);
    struct stat original {};
    if (::fstat(targets[0].fd.get(), &original) != 0 || ::fchdir(targets[0].fd.get()) != 0) {
        std::perror(top.c_str());
        return 1;
    }
    std::mt19937_64 random(settings.seed);
    const auto delay = static_cast<std::int64_t>(
        random() % static_cast<std::uint64_t>(settings.delayMicroseconds + 1));
    say("ready");
    pauseFor(delay);
    std::vector<std::string> made;
    constexpr Route routes[] = {Route::path, Route::descriptor, Route::workingFolder};
    for (unsigned long id = 0;
         id < static_cast<unsigned long>(settings.maxFiles) && keepGoing(deadline); ++id) {
        const TargetFolder& folder = targets[id % targets.size()];
        const Route route = routes[(id / targets.size()) % 3];
        const int fd = openNew(folder, route, "added-" + std::to_string(id));
        // Checked after the file is made: if FOLDER is still in place then, it was made before
        // anything moved FOLDER away.
        if (fd >= 0 && writeMarker(fd, id)) {
            made.push_back("victim " + std::to_string(id) +
                           (sameItem(top, original) ? " early" : " late"));
        }
        pauseFor(settings.gapMicroseconds);
    }
    while (keepGoing(deadline)) {
        pauseFor(1000);
    }
    for (const auto& line : made) {
        say(line);
    }
    return 0;
}

[[noreturn]] void usage() {
    std::fputs(
        "usage: race-adversary [--seconds S] folder-swap|file-swap REVIEWED VICTIM\n"
        "       race-adversary [--seconds S] parent-swap PARENT DECOY\n"
        "       race-adversary [--seconds S] restore-swap TRASHED TRASH_VICTIM PARENT DECOY\n"
        "       race-adversary [--seconds S] [--delay-us D] [--gap-us G] [--max-files N]\n"
        "                      [--seed X] file-added FOLDER\n",
        stderr);
    std::exit(2);
}

double number(const char* text) {
    char* end = nullptr;
    const double value = std::strtod(text, &end);
    if (end == text || *end != '\0' || value < 0) {
        usage();
    }
    return value;
}

Settings parse(int argc, char** argv) {
    Settings settings;
    int index = 1;
    for (; index + 1 < argc && std::string_view(argv[index]).starts_with("--"); index += 2) {
        const std::string_view option = argv[index];
        const double value = number(argv[index + 1]);
        if (option == "--seconds") {
            settings.seconds = value;
        } else if (option == "--delay-us") {
            settings.delayMicroseconds = static_cast<std::int64_t>(value);
        } else if (option == "--gap-us") {
            settings.gapMicroseconds = static_cast<std::int64_t>(value);
        } else if (option == "--max-files") {
            settings.maxFiles = static_cast<long>(value);
        } else if (option == "--seed") {
            settings.seed = static_cast<unsigned long>(value);
        } else {
            usage();
        }
    }
    if (index >= argc) {
        usage();
    }
    settings.mode = argv[index];
    settings.paths.assign(argv + index + 1, argv + argc);
    return settings;
}

std::size_t pathCount(std::string_view mode) {
    if (mode == "folder-swap" || mode == "parent-swap" || mode == "file-swap") {
        return 2;
    }
    if (mode == "restore-swap") {
        return 4;
    }
    if (mode == "file-added") {
        return 1;
    }
    usage();
}

}  // namespace

int main(int argc, char** argv) {
    const Settings settings = parse(argc, argv);
    if (settings.paths.size() != pathCount(settings.mode)) {
        usage();
    }
    installStopHandlers();
    const Deadline deadline(settings.seconds);
    int status = 0;
    if (settings.mode == "file-added") {
        status = runFileAdded(settings, deadline);
    } else {
        std::vector<SwapPair> pairs;
        for (std::size_t index = 0; index < settings.paths.size(); index += 2) {
            pairs.push_back({settings.paths[index], settings.paths[index + 1]});
        }
        status = runSwaps(std::move(pairs), deadline);
    }
    say("done");
    return status;
}
