#pragma once

#include <filesystem>

#include "platform/FileDescriptor.h"

namespace tallowmere {

// Opens the folder `name` inside the open folder `parentFd` with `flags` (O_RDONLY or O_PATH)
// without following a link; an invalid descriptor and errno (ELOOP for a symbolic link) when it
// cannot.
FileDescriptor openFolderAt(int parentFd, const char* name, int flags);

// Opens `folder` one component at a time, refusing any component that is a symbolic link even
// if one is swapped in meanwhile, as an O_PATH descriptor for *at calls (not for listing);
// throws FileSystemError with the error of the component that failed.
FileDescriptor openFolderWithoutLinks(const std::filesystem::path& folder);

}  // namespace tallowmere
