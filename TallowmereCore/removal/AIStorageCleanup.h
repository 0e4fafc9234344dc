#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "measurement/Date.h"

namespace tallowmere::AIStorageCleanup {

// True when the file at `file` (an absolute path) may be offered for cleaning on its own:
// only in "Cache" and "Logs" locations, never when its name or a folder on its path marks it
// as saved work, a credential, a database or model weights. Pure: never touches the disk.
bool eligible(const std::filesystem::path& file, Date modified, const std::string& category,
              Date now, bool includeRecent);

// `eligible` for a file whose name is already lower-cased and whose folders were checked
// once: the walk knows for each folder whether it or one above it is protected.
bool eligibleInFolder(std::string_view lowerName, bool folderProtected, Date modified,
                      const std::string& category, Date now, bool includeRecent);

// What the rules say of one file, from one look at its name: a walk asks for every file.
struct FileVerdict {
    bool eligible = false;        // `eligibleInFolder` without recent files
    bool eligibleRecent = false;  // with them
    bool oldLog = false;          // `isOldLogFile` without recent files
};

FileVerdict verdictInFolder(std::string_view lowerName, bool folderProtected, Date modified,
                            const std::string& category, Date now);

// True when one folder name (any case) marks its contents as never cleaned file by file.
bool isProtectedFolderName(std::string_view folderName);

// True when some folder of `folder` (every component, root to last) is protected.
bool hasProtectedFolder(const std::filesystem::path& folder);

// True when `lowerName` (lower-cased) names a log of a "Logs" location that is at least a
// week old at `now`, or of any age with `includeRecent`: "server.log", "app.log.20240101".
bool isOldLogFile(std::string_view lowerName, Date modified, const std::string& category, Date now,
                  bool includeRecent);

}  // namespace tallowmere::AIStorageCleanup
