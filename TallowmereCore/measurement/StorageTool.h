#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "measurement/StorageFinding.h"
#include "removal/StorageCleanupFile.h"

namespace tallowmere {

// The findings of one AI tool, named by its owner; every total and list is computed anew on
// each access from `findings`.
struct StorageTool {
    std::string owner;
    std::vector<StorageFinding> findings;

    // The tool's identity: its owner name.
    const std::string& id() const { return owner; }

    // Bytes on disk over all findings, hidden ones included.
    std::int64_t allocatedBytes() const;

    // Files counted over all findings, hidden ones included.
    std::int64_t fileCount() const;

    // True when some finding's walk stopped at its limit or skipped entries.
    bool incomplete() const;

    // The findings' distinct category labels in ascending byte order.
    std::vector<std::string> categories() const;

    // The findings worth showing, in `findings` order: a "Cache" or "Logs" finding while it
    // holds a cleanable file of positive size, any other finding while it holds bytes.
    std::vector<StorageFinding> visibleFindings() const;

    // How many findings visibleFindings() holds, without copying them.
    std::int64_t visibleFindingCount() const;

    // The files of all findings that may be cleaned one by one, recent ones included: the
    // 500 largest, largest first, equal sizes in `findings` order.
    std::vector<StorageCleanupFile> cleanupFiles() const;

    // Bytes on disk of exactly the files `cleanupFiles` returns.
    std::int64_t reviewBytes() const;

    // One tool per owner (exact text), its findings largest first (stable); tools largest
    // first, equal totals by owner in ascending byte order, whatever the input order. Takes
    // the findings over: each holds up to a thousand files, so a copy is made only on purpose.
    static std::vector<StorageTool> group(std::vector<StorageFinding>&& findings);

    // True for a finding worth showing (see visibleFindings).
    static bool isVisible(const StorageFinding& finding);
};

}  // namespace tallowmere
