#include "measurement/LocationScope.h"

#include "platform/LocationFolder.h"
#include "removal/AIStorageCleanup.h"

namespace tallowmere {

WalkFolder LocationScope::rootFolder() const {
    WalkFolder root;
    root.path = url.native();
    root.protectedFolder = checksFiles() && AIStorageCleanup::hasProtectedFolder(url);
    root.nestedNames = nestedNamesIn(root.path, nestedFolders);
    return root;
}

OpenedFolder openForWalk(const LocationScope& scope) {
    LocationFolder found = LocationFolder::open(scope.url.native());
    switch (found.state) {
        case LocationFolder::State::absent:
            return {{}, "It was moved or deleted while the scan ran."};
        case LocationFolder::State::unreadable:
            return {{}, std::move(found.reason)};
        case LocationFolder::State::open:
            break;
    }
    if (found.status.identity != scope.rootStatus.identity) {
        return {{}, "It was replaced while the scan ran."};
    }
    return {std::move(found.stream), {}};
}

}  // namespace tallowmere
