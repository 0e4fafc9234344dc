#include "removal/BroadLocation.h"

#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>
#include <vector>

#include "platform/PathRules.h"
#include "platform/UserFolders.h"

namespace tallowmere::StorageLocationTrash {

namespace {

// Folders that hold far more than one tool's storage, on macOS and on Linux.
constexpr std::string_view broadFolders[] = {
    "/",        "/System",      "/Library", "/Applications", "/Users", "/Volumes",
    "/private", "/private/tmp", "/home",    "/root",         "/usr",   "/etc",
    "/var",     "/srv",         "/mnt",     "/media",        "/run",   "/tmp",
    "/boot",    "/opt",         "/bin",     "/sbin",         "/lib",   "/lib64",
    "/proc",    "/sys",         "/dev"};
// Trees that belong to the system as a whole, whatever lies in them.
constexpr std::string_view systemTrees[] = {"/System/", "/usr/", "/etc/",  "/proc/",
                                            "/sys/",    "/dev/", "/boot/", "/var/lib/"};
// Home folders shared by many tools; one tool's folder inside them is fine to remove.
constexpr std::string_view sharedHomeFolders[] = {"Library",        "Library/Application Support",
                                                  "Library/Caches", "Library/Preferences",
                                                  ".config",        ".cache",
                                                  ".local",         ".local/share",
                                                  ".local/state"};
// Home folders of keys: nothing in them is a tool's storage.
constexpr std::string_view keyFolders[] = {".ssh", ".gnupg"};

using Paths = std::vector<std::filesystem::path>;

bool isHomeOrAbove(const std::string& target, const std::string& home) {
    return target == home || PathRules::isInside(home, target);
}

bool isAtOrInside(const std::string& target, const std::string& folder) {
    return target == folder || PathRules::isInside(target, folder);
}

// ".Trash" and ".Trash-<uid>": the freedesktop.org trash folders at the top of a mount, and
// macOS's.
bool isTrashName(std::string_view name) {
    constexpr std::string_view userTrash = ".Trash-";
    if (name == ".Trash") {
        return true;
    }
    return name.size() > userTrash.size() && name.starts_with(userTrash) &&
           std::ranges::all_of(name.substr(userTrash.size()),
                               [](unsigned char c) { return std::isdigit(c) != 0; });
}

bool hasTrashComponent(const std::filesystem::path& target) {
    return std::ranges::any_of(target, [](const std::filesystem::path& component) {
        return isTrashName(component.native());
    });
}

// Folders named by configuration count both as written and as their links lead.
Paths withLinksResolved(Paths folders) {
    const std::size_t written = folders.size();
    for (std::size_t index = 0; index < written; ++index) {
        folders.push_back(PathRules::resolvingSymlinks(folders[index]));
    }
    return folders;
}

// Folders that are broad themselves while what lies inside them may be one tool's.
Paths sharedFolders(const std::filesystem::path& home) {
    Paths folders;
    for (std::string_view subfolder : sharedHomeFolders) {
        folders.push_back(home / subfolder);
    }
    for (const auto& [name, folder] : UserFolders::xdgUserDirs()) {
        folders.push_back(folder);
    }
    folders.insert(folders.end(), {UserFolders::dataFolder(), UserFolders::configFolder(),
                                   UserFolders::cachesFolder(), UserFolders::stateFolder()});
    return withLinksResolved(std::move(folders));
}

// Folders that are broad with everything inside them.
Paths closedTrees(const std::filesystem::path& home) {
    Paths folders;
    for (std::string_view subfolder : keyFolders) {
        folders.push_back(home / subfolder);
    }
    folders.push_back(home / ".local/share/Trash");
    folders.push_back(UserFolders::dataFolder() / "Trash");
    return withLinksResolved(std::move(folders));
}

bool isCurrentHomeFolder(const std::string& target) {
    const std::filesystem::path home = UserFolders::homeFolder();
    return isHomeOrAbove(target, home.native()) ||
           std::ranges::any_of(sharedFolders(home),
                               [&](const auto& folder) { return target == folder.native(); }) ||
           std::ranges::any_of(closedTrees(home), [&](const auto& folder) {
               return isAtOrInside(target, folder.native());
           });
}

// Other accounts' homes count too, both as written and as their links lead.
bool isAnyAccountsHome(const std::string& target) {
    return std::ranges::any_of(UserFolders::passwordDatabaseHomes(), [&](const auto& home) {
        return isHomeOrAbove(target, home.native()) ||
               isHomeOrAbove(target, PathRules::resolvingSymlinks(home).native());
    });
}

}  // namespace

bool isBroadLocation(const std::filesystem::path& target) {
    const std::string& text = target.native();
    const bool tooShallow = std::ranges::count(text, '/') < 2;  // "/" and "/opt"
    return tooShallow || std::ranges::find(broadFolders, text) != std::end(broadFolders) ||
           std::ranges::any_of(systemTrees,
                               [&](std::string_view tree) { return text.starts_with(tree); }) ||
           hasTrashComponent(target) || isCurrentHomeFolder(text) || isAnyAccountsHome(text);
}

}  // namespace tallowmere::StorageLocationTrash
