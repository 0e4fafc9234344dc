#pragma once

#include <stdexcept>

namespace tallowmere {

// The item on disk is no longer the one the user reviewed (changed, replaced, or reached
// through a symbolic link).
struct FileTrashError : std::runtime_error {
    FileTrashError()
        : std::runtime_error(
              "This file changed since the scan. Scan again and review it before continuing.") {}
};

// Why a folder cannot be reviewed for removal.
struct ReviewError : std::runtime_error {
    enum class Kind { broadLocation, unavailable, limit };

    explicit ReviewError(Kind reason) : std::runtime_error(description(reason)), kind(reason) {}

    static const char* description(Kind kind) {
        switch (kind) {
            case Kind::broadLocation:
                return "Choose a tool’s storage folder rather than a home, system or volume "
                       "folder.";
            case Kind::unavailable:
                return "This folder could not be fully checked. Check access and scan again.";
            case Kind::limit:
                return "This folder is too large to verify in one review. Choose a smaller storage "
                       "location.";
        }
        return "";
    }

    Kind kind;
};

}  // namespace tallowmere
