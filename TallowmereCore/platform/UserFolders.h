#pragma once

#include <filesystem>
#include <vector>

namespace tallowmere::UserFolders {

// The current user's home folder: $HOME when it is set to an absolute path, else the password
// database's entry; standardized, with symbolic links resolved once so that a home reached
// through a link is measured like any other. Throws std::runtime_error when neither is known.
std::filesystem::path homeFolder();

// The folder for the user's discardable data (XDG Base Directory): $XDG_CACHE_HOME when it is an
// absolute path, else homeFolder()/.cache; standardized. Throws as homeFolder() does.
std::filesystem::path cachesFolder();

// The home folders of the accounts in the password database, standardized, in database order;
// the listing stops at the first entry that cannot be read. Safe to call from several threads.
std::vector<std::filesystem::path> passwordDatabaseHomes();

// Where the summary of the last scan is kept: cachesFolder()/Tallowmere/storage-summary.json.
std::filesystem::path summaryFile();

}  // namespace tallowmere::UserFolders
