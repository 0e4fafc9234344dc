#pragma once

#include "FolderChooser.h"

namespace tallowmere {

// The folder dialog of the application: folders only, hidden ones shown, no button to create
// one, confirmed with "Track storage", with a line saying that nothing is opened.
class FolderDialogChooser : public FolderChooser {
public:
    std::optional<std::string> chooseFolder() override;
};

}  // namespace tallowmere
