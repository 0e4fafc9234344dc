#include "measurement/LocationScope.h"

#include "removal/AIStorageCleanup.h"

namespace tallowmere {

WalkFolder LocationScope::rootFolder() const {
    WalkFolder root;
    root.path = url.native();
    root.protectedFolder = checksFiles() && AIStorageCleanup::hasProtectedFolder(url);
    root.nestedNames = nestedNamesIn(root.path, nestedFolders);
    return root;
}

}  // namespace tallowmere
