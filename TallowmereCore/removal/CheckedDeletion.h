#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/EntryStatus.h"
#include "platform/FileIdentity.h"
#include "removal/FolderRecords.h"

namespace tallowmere {

// Which items the deletion walk of a checked folder may take: those the check recorded,
// exactly as recorded. Deleting one name of a file with several moves the file's change time,
// so its other names are matched with the change time it was checked with.
class RecordedItems {
public:
    explicit RecordedItems(const FolderRecords& records) : m_records(records) {}

    bool accept(std::string_view path, const EntryStatus& status);

    // The space the accepted items release: a folder's own blocks, a file's only with its last
    // name, since another name keeps them in use.
    std::int64_t released() const { return m_released; }

private:
    const FolderRecords& m_records;
    std::unordered_map<FileIdentity, EntryStatus, FileIdentityHash> m_linked;
    std::int64_t m_released = 0;
};

// The space deleting the entry releases, as RecordedItems::released counts it.
std::int64_t releasedBytes(const EntryStatus& status);

// "2 items were added or changed while it was being deleted, …": why a deletion left items.
std::string keptText(std::size_t kept);

}  // namespace tallowmere
