#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <unordered_set>
#include <vector>

#include "measurement/AIStorageScanner.h"
#include "measurement/FolderJobs.h"
#include "measurement/StorageFinding.h"
#include "platform/EntryStatus.h"
#include "platform/FileIdentity.h"

namespace tallowmere {

// Working state that one scan shares between its locations.
struct ScanContext {
    Date now = 0;
    ScanOptions options;
    // Identities of counted files that could be met again: files with several links, and
    // files reached through another mount than their location's (a bind mount can show a
    // one-link file twice).
    std::unordered_set<FileIdentity, FileIdentityHash> countedIdentities;
};

// Walks one location's folder (`root`, listed by `jobs`) depth first, in the order the file
// system lists each folder, exactly as one thread would, and measures it; other locations'
// folders inside it are passed over without being counted. Throws ScanCancelled when a stop
// is requested.
StorageFinding measureLocation(const StorageLocation& location, const std::filesystem::path& folder,
                               const EntryStatus& rootStatus, std::shared_ptr<FolderJob> root,
                               std::int64_t maxEntries, ScanContext& context, FolderJobs& jobs);

}  // namespace tallowmere
