#pragma once

#include <filesystem>

namespace tallowmere::UserFolders {

// The current user's home folder: $HOME when it is set to an absolute path, else the password
// database's entry; standardized, with symbolic links resolved once so that a home reached
// through a link is measured like any other. Throws std::runtime_error when neither is known.
std::filesystem::path homeFolder();

}  // namespace tallowmere::UserFolders
