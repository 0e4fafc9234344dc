#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "measurement/Date.h"
#include "measurement/StorageLocation.h"
#include "measurement/WalkFolder.h"
#include "platform/DirectoryStream.h"
#include "platform/EntryStatus.h"
#include "platform/FilePath.h"

namespace tallowmere {

// What the walk of one location goes by, the same for every folder in it.
struct LocationScope {
    StorageLocation location;
    FilePath url;  // shared by every cleanup file found in it
    EntryStatus rootStatus;
    // Folders inside this one that its walk passes over: other locations' folders, measured on
    // their own, and folders that the scan measures through another mount (see mountCopies).
    std::vector<std::string> nestedFolders;
    Date now = 0;
    std::size_t listIndex = 0;  // its place in the scan's list of locations

    // Files of caches and logs are candidates for cleaning one by one.
    bool checksFiles() const { return location.category == "Cache" || location.category == "Logs"; }
    // True for a file that may be met again, under another name or through another mount; only
    // its first meeting counts.
    bool mayRecur(const EntryStatus& status) const {
        return status.linkCount > 1 || !onRootMount(status);
    }
    // True for a file that can be met under its two names and no other way.
    bool hasTwoNamesOnly(const EntryStatus& status) const {
        return status.linkCount == 2 && onRootMount(status);
    }
    bool onRootMount(const EntryStatus& status) const {
        return status.mountId == rootStatus.mountId &&
               status.identity.device == rootStatus.identity.device;
    }
    WalkFolder rootFolder() const;
};

// A location's folder opened for its walk, or why it could not be.
struct OpenedFolder {
    DirectoryStream stream;
    std::string reason;  // when `stream` is not valid
};

// Opens the location's folder again as its walk starts, so that a scan of many locations holds
// few open, and gives it only if it is still the folder the scan first looked at.
OpenedFolder openForWalk(const LocationScope& scope);

}  // namespace tallowmere
