#include "MeasuredLocations.h"

#include "Usage.h"
#include "platform/PathRules.h"
#include "platform/UserFolders.h"

namespace tallowmere::cli {

StorageLayout layoutFrom(const Options& options) {
    const auto names = options.all("layout");
    if (names.empty()) {
        return nativeStorageLayout();
    }
    if (const auto layout = storageLayoutNamed(names.back())) {
        return *layout;
    }
    throw UsageError("--layout must be 'macos' or 'linux', not '" + names.back() + "'");
}

std::filesystem::path typedPath(const std::string& path) {
    if (path == "~" || path.starts_with("~/")) {
        return PathRules::absoluteStandardized(UserFolders::homeFolder().native() + path.substr(1));
    }
    return PathRules::absoluteStandardized(path);
}

std::vector<std::string> trackedPaths(const Options& options) {
    std::vector<std::string> paths;
    for (const auto& path : options.all("track")) {
        if (path.empty()) {
            throw UsageError("--track needs a folder path");
        }
        paths.push_back(typedPath(path).native());
    }
    return paths;
}

}  // namespace tallowmere::cli
