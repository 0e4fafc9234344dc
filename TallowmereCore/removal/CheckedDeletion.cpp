#include "removal/CheckedDeletion.h"

namespace tallowmere {

bool RecordedItems::accept(std::string_view path, const EntryStatus& status) {
    EntryStatus asChecked = status;
    if (const auto first = m_linked.find(status.identity); first != m_linked.end()) {
        asChecked.statusChangedSeconds = first->second.statusChangedSeconds;
        asChecked.statusChangedNanoseconds = first->second.statusChangedNanoseconds;
    }
    if (!m_records.contains(path, asChecked)) {
        return false;
    }
    if (status.kind != EntryKind::directory && status.linkCount > 1) {
        m_linked.emplace(status.identity, status);
    }
    m_released += releasedBytes(status);
    return true;
}

std::int64_t releasedBytes(const EntryStatus& status) {
    const bool last = status.kind == EntryKind::directory || status.linkCount == 1;
    return last ? status.allocatedBytes : 0;
}

std::string keptText(std::size_t kept) {
    return std::to_string(kept) + (kept == 1 ? " item was" : " items were") +
           " added or changed while it was being deleted, so they were kept with the folders "
           "that hold them.";
}

}  // namespace tallowmere
