#include "platform/LocationFolder.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

#include "platform/FileDescriptor.h"
#include "platform/PathRules.h"

namespace tallowmere {

namespace {

bool resolvesToItself(const std::filesystem::path& folder) {
    return PathRules::resolvingSymlinks(folder) == folder;
}

LocationFolder withState(LocationFolder::State state) {
    LocationFolder result;
    result.state = state;
    return result;
}

}  // namespace

LocationFolder LocationFolder::open(const std::filesystem::path& folder) {
    struct stat seen;
    if (::lstat(folder.c_str(), &seen) != 0) {
        return withState(errno == ENOENT || errno == ENOTDIR ? State::absent : State::unreadable);
    }
    if (!S_ISDIR(seen.st_mode) || !resolvesToItself(folder)) {
        return withState(State::unreadable);
    }
    FileDescriptor fd(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    LocationFolder result;
    // The folder must still be the one looked at above, not something swapped in since.
    if (!fd.valid() || !readEntryStatus(fd.get(), "", result.status) ||
        result.status.identity != FileIdentity{seen.st_dev, seen.st_ino}) {
        return withState(State::unreadable);
    }
    result.stream = DirectoryStream::adopt(fd.release());
    result.state = result.stream.valid() ? State::open : State::unreadable;
    return result;
}

}  // namespace tallowmere
