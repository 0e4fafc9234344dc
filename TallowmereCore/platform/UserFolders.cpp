#include "platform/UserFolders.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/AtomicFile.h"
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

// An XDG Base Directory variable names a folder only when it holds an absolute path.
std::filesystem::path baseFolder(const char* variable, const char* fallback) {
    const char* value = std::getenv(variable);
    if (value && value[0] == '/') {
        return PathRules::standardized(value);
    }
    return homeFolder() / fallback;
}

constexpr std::pair<std::string_view, std::string_view> userDirDefaults[] = {
    {"DESKTOP", "Desktop"},    {"DOWNLOAD", "Downloads"},  {"TEMPLATES", "Templates"},
    {"PUBLICSHARE", "Public"}, {"DOCUMENTS", "Documents"}, {"MUSIC", "Music"},
    {"PICTURES", "Pictures"},  {"VIDEOS", "Videos"}};

// xdg-user-dirs writes a few hundred bytes; anything far larger is not its file.
constexpr std::size_t maxUserDirsBytes = 64 * 1024;

std::string_view withoutLeadingBlanks(std::string_view text) {
    const auto start = text.find_first_not_of(" \t");
    return start == std::string_view::npos ? std::string_view() : text.substr(start);
}

bool consume(std::string_view& text, std::string_view prefix) {
    if (!text.starts_with(prefix)) {
        return false;
    }
    text.remove_prefix(prefix.size());
    return true;
}

// The rest of a double-quoted value with its backslash escapes undone; nothing when the closing
// quote is missing.
std::optional<std::string> quotedValue(std::string_view text) {
    std::string value;
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (text[index] == '"') {
            return value;
        }
        if (text[index] == '\\' && index + 1 < text.size()) {
            ++index;
        }
        value += text[index];
    }
    return std::nullopt;
}

struct UserDirLine {
    std::string name;
    std::filesystem::path folder;
};

// A line `XDG_<NAME>_DIR="$HOME/…"` or `XDG_<NAME>_DIR="/…"`, read as xdg-user-dirs' own lookup
// reads it; nothing for comments and any other line.
std::optional<UserDirLine> parseUserDirLine(std::string_view line,
                                            const std::filesystem::path& home) {
    constexpr std::string_view nameEnd = "_DIR";
    line = withoutLeadingBlanks(line);
    const bool named = consume(line, "XDG_");
    const auto nameSize = line.find(nameEnd);
    if (!named || nameSize == std::string_view::npos) {
        return std::nullopt;
    }
    std::string name(line.substr(0, nameSize));
    line = withoutLeadingBlanks(line.substr(nameSize + nameEnd.size()));
    if (!consume(line, "=")) {
        return std::nullopt;
    }
    line = withoutLeadingBlanks(line);
    const bool quoted = consume(line, "\"");
    const bool inHome = consume(line, "$HOME/");
    const auto value = quotedValue(line);
    if (!quoted || !value || (!inHome && !value->starts_with('/'))) {
        return std::nullopt;
    }
    // Concatenated, not joined with `/`: "$HOME//etc" is a folder in the home, not /etc.
    return UserDirLine{std::move(name),
                       PathRules::standardized(inHome ? home.native() + "/" + *value : *value)};
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
    return baseFolder("XDG_CACHE_HOME", ".cache");
}

std::filesystem::path dataFolder() {
    return baseFolder("XDG_DATA_HOME", ".local/share");
}

std::filesystem::path configFolder() {
    return baseFolder("XDG_CONFIG_HOME", ".config");
}

std::filesystem::path stateFolder() {
    return baseFolder("XDG_STATE_HOME", ".local/state");
}

std::map<std::string, std::filesystem::path> parseXdgUserDirs(std::string_view text,
                                                              const std::filesystem::path& home) {
    std::map<std::string, std::filesystem::path> folders;
    for (const auto& [name, folder] : userDirDefaults) {
        folders.emplace(name, PathRules::standardized(home / folder));
    }
    // A later line wins, as in xdg-user-dirs' lookup.
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        auto line = parseUserDirLine(text.substr(start, end - start), home);
        if (line && folders.contains(line->name)) {
            folders[line->name] = std::move(line->folder);
        }
        start = end + 1;
    }
    return folders;
}

std::map<std::string, std::filesystem::path> xdgUserDirs() {
    const std::filesystem::path home = homeFolder();
    const auto text =
        AtomicFile::readWholeFile(configFolder() / "user-dirs.dirs", maxUserDirsBytes);
    return parseXdgUserDirs(text.value_or(""), home);
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
