#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/EntryStatus.h"

namespace tallowmere {

// What a walk of one folder recorded: a record per item (relative path, kind, identity,
// modification time, size), the fingerprint of those records, and a second fingerprint of the
// items' status change times, which a rewrite that restores size and date still moves.
// Once sealed, a later walk can ask whether an item it meets is exactly one that was recorded.
class FolderRecords {
public:
    // Records the item at `relativePath` ("" for the folder itself).
    void add(std::string_view relativePath, const EntryStatus& status);
    // Sorts the records; call once, after the last `add` and before anything below.
    void seal();

    // The SHA-256 of the records in ascending byte order, as lower-case hexadecimal.
    std::string fingerprint() const;
    // The SHA-256 of every item's status change time in the order of the records, the
    // folder's own left out: moving the folder changes its own, nothing below it. Compared
    // beside an equal fingerprint, which fixes the items and their order.
    std::string changeFingerprint() const;
    // True when `status` at `relativePath` is an item recorded exactly so, change time included.
    bool contains(std::string_view relativePath, const EntryStatus& status) const;

    std::int64_t itemCount() const { return m_itemCount; }
    std::int64_t allocatedBytes() const { return m_allocatedBytes; }

private:
    struct Span {
        std::size_t offset = 0;
        std::uint32_t recordLength = 0;  // the record the fingerprint covers
        std::uint32_t fullLength = 0;    // with the change time after it
    };

    std::string_view record(const Span& span) const;
    std::string_view fullRecord(const Span& span) const;

    std::string m_text;  // all records one after another: 100,000 items, one allocation
    std::vector<Span> m_spans;
    std::int64_t m_itemCount = -1;  // the folder itself is not counted
    std::int64_t m_allocatedBytes = 0;
};

}  // namespace tallowmere
