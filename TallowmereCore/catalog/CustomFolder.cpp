#include "catalog/CustomFolder.h"

#include "platform/PathRules.h"

namespace tallowmere {

StorageLocation customFolderLocation(const std::filesystem::path& folder, StorageLayout layout) {
    const std::string name = PathRules::lastComponent(PathRules::standardized(folder));
    return {name.empty() ? folder.native() : name, "Custom folder", folder.native(),
            wordedForLayout("Added by you. Review in Finder; this may contain active work or "
                            "conversation history.",
                            layout)};
}

}  // namespace tallowmere
