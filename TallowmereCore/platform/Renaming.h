#pragma once

#include <string>

#include "platform/FileSystemError.h"

namespace tallowmere::Renaming {

// Renames `from` in the open folder `fromFd` to `to` in the open folder `toFd`, never
// replacing what is there. Returns false and sets errno when it cannot: EEXIST when the name
// is taken.
[[nodiscard]] bool moveWithoutReplacing(int fromFd, const char* from, int toFd, const char* to);

// The error for a failed `moveWithoutReplacing`, in the program's own words.
FileSystemError failure(int code);

// A fresh name for an item set aside in its own folder while it is checked and removed:
// hidden, recognisable, and with 64 random bits nobody can guess or hit by chance.
std::string privateName();

}  // namespace tallowmere::Renaming
