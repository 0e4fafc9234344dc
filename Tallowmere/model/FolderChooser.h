#pragma once

#include <optional>
#include <string>

namespace tallowmere {

// Asks the user for a folder to track, modally. The application shows a folder dialog; tests
// answer without one.
class FolderChooser {
public:
    virtual ~FolderChooser() = default;

    // The chosen folder's path (native bytes), or nothing when the user cancelled.
    virtual std::optional<std::string> chooseFolder() = 0;
};

}  // namespace tallowmere
