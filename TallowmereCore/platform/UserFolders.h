#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tallowmere::UserFolders {

// The current user's home folder: $HOME when it is set to an absolute path, else the password
// database's entry; standardized, with symbolic links resolved once so that a home reached
// through a link is measured like any other. Throws std::runtime_error when neither is known.
std::filesystem::path homeFolder();

// The folder for the user's discardable data (XDG Base Directory): $XDG_CACHE_HOME when it is an
// absolute path, else homeFolder()/.cache; standardized. Throws as homeFolder() does.
std::filesystem::path cachesFolder();

// The user's data folder (XDG Base Directory): $XDG_DATA_HOME when it is an absolute path, else
// homeFolder()/.local/share; standardized. Throws as homeFolder() does.
std::filesystem::path dataFolder();

// The user's settings folder: $XDG_CONFIG_HOME when it is an absolute path, else
// homeFolder()/.config; standardized. Throws as homeFolder() does.
std::filesystem::path configFolder();

// The user's state folder: $XDG_STATE_HOME when it is an absolute path, else
// homeFolder()/.local/state; standardized. Throws as homeFolder() does.
std::filesystem::path stateFolder();

// The eight standard xdg-user-dirs folders, by name ("DESKTOP", "DOWNLOAD", "TEMPLATES",
// "PUBLICSHARE", "DOCUMENTS", "MUSIC", "PICTURES", "VIDEOS"), as the text of a user-dirs.dirs
// file sets them, standardized; one the text leaves unset or sets on a damaged line keeps its
// English default under `home` (~/Desktop, ~/Downloads, ~/Templates, ~/Public, ~/Documents,
// ~/Music, ~/Pictures, ~/Videos). Pure; never throws.
std::map<std::string, std::filesystem::path> parseXdgUserDirs(std::string_view text,
                                                              const std::filesystem::path& home);

// parseXdgUserDirs of configFolder()/user-dirs.dirs against homeFolder(); the defaults when the
// file is missing, unreadable or implausibly large. Throws as homeFolder() does.
std::map<std::string, std::filesystem::path> xdgUserDirs();

// The home folders of the accounts in the password database, standardized, in database order;
// the listing stops at the first entry that cannot be read. Safe to call from several threads.
std::vector<std::filesystem::path> passwordDatabaseHomes();

// Where the summary of the last scan is kept: cachesFolder()/Tallowmere/storage-summary.json.
std::filesystem::path summaryFile();

}  // namespace tallowmere::UserFolders
