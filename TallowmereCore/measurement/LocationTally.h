#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "measurement/FileEntry.h"
#include "measurement/LocationScope.h"
#include "measurement/RankedList.h"
#include "measurement/StorageFinding.h"
#include "measurement/WalkFolder.h"
#include "platform/EntryStatus.h"
#include "platform/FileIdentity.h"

namespace tallowmere {

// What walks have measured of one location so far: sums, and the files its lists keep. Files
// may be counted in any order, and tallies of parts of a location added up in any order; the
// lists come out as one thread walking the whole location in order would keep them.
class LocationTally {
public:
    explicit LocationTally(const LocationScope& scope);

    // Counts the regular file `name` in `folder`, met at `position` (see WalkFolder::position).
    void countFile(const WalkFolder& folder, std::uint64_t position, std::string_view name,
                   const EntryStatus& status);
    // The entry `name` in `folder`, met at `position`, that could not be read or opened for
    // `error`.
    void countSkipped(const WalkFolder& folder, std::uint64_t position, std::string_view name,
                      int error);
    // The folder itself, whose listing could not be read on for `error`.
    void countSkipped(const WalkFolder& folder, int error);
    // The folder itself, which could not be read for `reason`, one sentence.
    void countSkipped(const WalkFolder& folder, std::string reason);

    void add(LocationTally&& other);

    StorageFinding finding(bool limited) &&;

private:
    // The lists a counted file goes into.
    struct Lists;

    Lists listsFor(const WalkFolder& folder, std::uint64_t position, std::string_view name,
                   const EntryStatus& status, Date modified);

    const LocationScope* m_scope;
    bool m_checksFiles;
    std::int64_t m_allocatedBytes = 0;
    std::int64_t m_logicalBytes = 0;
    std::int64_t m_fileCount = 0;
    std::int64_t m_skippedCount = 0;
    RankedList<FileEntry> m_largestFiles;
    RankedList<FileEntry> m_oldLogs;
    RankedList<FileEntry> m_cleanupFiles;  // ranked by allocated bytes
    RankedList<FileEntry> m_recentCleanupFiles;
    // All of equal rank, so the first in walk order are kept.
    RankedList<UnreadableFolder> m_unreadable;
    std::int64_t m_cleanupFileCount = 0;
    std::int64_t m_cleanupBytes = 0;
    std::int64_t m_recentCleanupFileCount = 0;
    std::int64_t m_recentCleanupBytes = 0;
    std::string m_lowerName;  // reused so lower-casing a name allocates nothing per file
};

}  // namespace tallowmere
