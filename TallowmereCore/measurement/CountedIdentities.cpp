#include "measurement/CountedIdentities.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tallowmere {

namespace {

constexpr std::size_t firstCapacity = 1024;  // a power of two, as every capacity is

std::size_t slotOf(std::uint64_t inode, std::size_t capacity) {
    // Inodes are often sequential; the multiplication spreads them over the table.
    return static_cast<std::size_t>((inode * 0x9E3779B97F4A7C15ULL) >> 32) & (capacity - 1);
}

}  // namespace

bool CountedIdentities::insert(const FileIdentity& identity) {
    auto table = std::ranges::find(m_devices, identity.device, &DeviceTable::device);
    if (table == m_devices.end()) {
        m_devices.push_back({identity.device, {}, 0, false});
        table = std::prev(m_devices.end());
    }
    if (identity.inode == 0) {
        return !std::exchange(table->holdsInodeZero, true);
    }
    return insertInto(*table, identity.inode);
}

bool CountedIdentities::insertInto(DeviceTable& table, std::uint64_t inode) {
    // Up to seven eighths full: eight slots share a cache line, so probes stay cheap, and
    // growing, which briefly holds the table twice, comes late.
    if ((table.used + 1) * 8 > table.slots.size() * 7) {
        grow(table);
    }
    const std::size_t mask = table.slots.size() - 1;
    for (std::size_t slot = slotOf(inode, table.slots.size());; slot = (slot + 1) & mask) {
        if (table.slots[slot] == inode) {
            return false;
        }
        if (table.slots[slot] == 0) {
            table.slots[slot] = inode;
            ++table.used;
            return true;
        }
    }
}

void CountedIdentities::grow(DeviceTable& table) {
    std::vector<std::uint64_t> old = std::move(table.slots);
    table.slots.assign(old.empty() ? firstCapacity : old.size() * 2, 0);
    table.used = 0;
    for (const std::uint64_t inode : old) {
        if (inode != 0) {
            insertInto(table, inode);
        }
    }
}

}  // namespace tallowmere
