#include "platform/UserFolders.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
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

std::filesystem::path summaryFile() {
    return cachesFolder() / "Tallowmere" / "storage-summary.json";
}

}  // namespace tallowmere::UserFolders
