#include "platform/LocationFolder.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <system_error>

#include "platform/FileDescriptor.h"
#include "platform/FileSystemError.h"
#include "platform/PathRules.h"

namespace tallowmere {

namespace {

LocationFolder absent() {
    LocationFolder result;
    result.state = LocationFolder::State::absent;
    return result;
}

LocationFolder unreadable(std::string reason) {
    LocationFolder result;
    result.reason = std::move(reason);
    return result;
}

bool isFolder(const std::filesystem::path& path) {
    struct stat status;
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// Links are never followed, so the way to measure a folder a link leads to is to name it.
std::string linkReason(const std::filesystem::path& link) {
    const auto target = PathRules::resolvingSymlinks(link);
    if (target != link && isFolder(target)) {
        return "It is a symbolic link to " + target.native() +
               ", and links are not followed; track that folder to measure it.";
    }
    std::error_code error;
    const auto written = std::filesystem::read_symlink(link, error);
    struct stat status;
    const bool missing = ::stat(link.c_str(), &status) != 0 && errno == ENOENT;
    return "It is a symbolic link to " + written.native() +
           (missing ? ", which does not exist." : ", which is not a folder.");
}

}  // namespace

LocationFolder LocationFolder::open(const std::filesystem::path& folder) {
    struct stat seen;
    if (::lstat(folder.c_str(), &seen) != 0) {
        return errno == ENOENT || errno == ENOTDIR ? absent() : unreadable(describeErrno(errno));
    }
    if (S_ISLNK(seen.st_mode)) {
        return unreadable(linkReason(folder));
    }
    if (!S_ISDIR(seen.st_mode)) {
        return unreadable("It is not a folder.");
    }
    const auto resolved = PathRules::resolvingSymlinks(folder);
    if (resolved != folder) {
        return unreadable("It lies behind a symbolic link (it is really " + resolved.native() +
                          "), and links are not followed; track that folder to measure it.");
    }
    FileDescriptor fd(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!fd.valid()) {
        return unreadable(describeErrno(errno));
    }
    LocationFolder result;
    if (!readEntryStatus(fd.get(), "", result.status)) {
        return unreadable(describeErrno(errno));
    }
    // The folder must still be the one looked at above, not something swapped in since.
    if (result.status.identity != FileIdentity{seen.st_dev, seen.st_ino}) {
        return unreadable("It was replaced while it was being opened.");
    }
    result.stream = DirectoryStream::adopt(fd.release());
    result.state = State::open;
    return result;
}

}  // namespace tallowmere
