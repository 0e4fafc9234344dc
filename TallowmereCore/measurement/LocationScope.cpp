#include "measurement/LocationScope.h"

#include "platform/LocationFolder.h"
#include "removal/AIStorageCleanup.h"

namespace tallowmere {

WalkFolder LocationScope::rootFolder() const {
    return locationFolder(std::string(url.native()),
                          checksFiles() && AIStorageCleanup::hasProtectedFolder(url),
                          nestedFolders);
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
