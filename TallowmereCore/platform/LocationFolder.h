#pragma once

#include <filesystem>
#include <string>

#include "platform/DirectoryStream.h"
#include "platform/EntryStatus.h"

namespace tallowmere {

// A location's folder opened for measuring, or why it cannot be measured.
struct LocationFolder {
    enum class State { open, absent, unreadable };

    State state = State::unreadable;
    DirectoryStream stream;
    EntryStatus status;  // of the folder itself, when open
    // Why it cannot be measured, in one sentence, when it is unreadable.
    std::string reason;

    // Opens `folder` (an absolute, standardized path) for a walk. It is absent when it does
    // not exist; unreadable when it is not a folder, is a symbolic link, lies behind one, or
    // cannot be opened.
    static LocationFolder open(const std::filesystem::path& folder);
};

}  // namespace tallowmere
