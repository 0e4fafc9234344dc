#include "platform/Renaming.h"

#include <fcntl.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <random>

namespace tallowmere::Renaming {

bool moveWithoutReplacing(int fromFd, const char* from, int toFd, const char* to) {
    return ::renameat2(fromFd, from, toFd, to, RENAME_NOREPLACE) == 0;
}

FileSystemError failure(int code) {
    // EINVAL means RENAME_NOREPLACE is unsupported; a plain rename could replace what lies at
    // the destination, so there is no fallback.
    if (code == EINVAL) {
        return {code, "This file system cannot move items without the risk of replacing another."};
    }
    return FileSystemError::fromErrno(code);
}

std::string privateName() {
    std::random_device source;
    const std::uint64_t bits = (std::uint64_t{source()} << 32) ^ source();
    char text[40];
    std::snprintf(text, sizeof text, ".tallowmere-%016llx", static_cast<unsigned long long>(bits));
    return text;
}

}  // namespace tallowmere::Renaming
