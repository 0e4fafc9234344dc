#include "platform/UserFolders.h"

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <mutex>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/PathRules.h"

namespace tallowmere::UserFolders {

namespace {

std::string homeFromPasswordDatabase() {
    long suggested = ::sysconf(_SC_GETPW_R_SIZE_MAX);
    std::vector<char> buffer(suggested > 0 ? static_cast<std::size_t>(suggested) : 16384);
    passwd entry;
    passwd* found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || !found ||
        !found->pw_dir) {
        return {};
    }
    return found->pw_dir;
}

}  // namespace

std::filesystem::path homeFolder() {
    const char* variable = std::getenv("HOME");
    std::string home = variable && variable[0] == '/' ? variable : homeFromPasswordDatabase();
    if (home.empty() || home[0] != '/') {
        throw std::runtime_error(
            "Cannot tell the home folder: HOME is not set and the user has no entry in the "
            "password database.");
    }
    return PathRules::resolvingSymlinks(home);
}

std::filesystem::path cachesFolder() {
    const char* variable = std::getenv("XDG_CACHE_HOME");
    if (variable && variable[0] == '/') {
        return PathRules::standardized(variable);
    }
    return homeFolder() / ".cache";
}

std::vector<std::filesystem::path> passwordDatabaseHomes() {
    // setpwent/getpwent_r share one cursor per process; the lock keeps our own callers apart.
    static std::mutex cursor;
    const std::lock_guard lock(cursor);
    std::vector<std::filesystem::path> homes;
    std::vector<char> buffer(16384);
    passwd entry;
    passwd* found = nullptr;
    ::setpwent();
    while (true) {
        const int error = ::getpwent_r(&entry, buffer.data(), buffer.size(), &found);
        if (error == ERANGE) {
            buffer.resize(buffer.size() * 2);
            continue;
        }
        if (error != 0 || !found) {
            break;
        }
        if (found->pw_dir && found->pw_dir[0] == '/') {
            homes.push_back(PathRules::standardized(found->pw_dir));
        }
    }
    ::endpwent();
    return homes;
}

std::filesystem::path summaryFile() {
    return cachesFolder() / "Tallowmere" / "storage-summary.json";
}

}  // namespace tallowmere::UserFolders
