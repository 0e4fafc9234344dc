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
    DeviceTable& table = tableOf(identity.device);
    if (identity.inode == 0) {
        return !std::exchange(table.holdsInodeZero, true);
    }
    return insertInto(table, identity.inode);
}

bool CountedIdentities::insertOneOfTwoNames(const FileIdentity& identity) {
    DeviceTable& table = tableOf(identity.device);
    if (identity.inode == 0) {
        return !std::exchange(table.holdsInodeZero, !table.holdsInodeZero);
    }
    if (!table.slots.empty()) {
        const std::size_t slot = slotFor(table, identity.inode);
        if (table.slots[slot] == identity.inode) {
            erase(table, slot);
            return false;
        }
    }
    return insertInto(table, identity.inode);
}

CountedIdentities::DeviceTable& CountedIdentities::tableOf(std::uint64_t device) {
    auto table = std::ranges::find(m_devices, device, &DeviceTable::device);
    if (table == m_devices.end()) {
        m_devices.push_back({device, {}, 0, false});
        table = std::prev(m_devices.end());
    }
    return *table;
}

std::size_t CountedIdentities::slotFor(const DeviceTable& table, std::uint64_t inode) {
    const std::size_t mask = table.slots.size() - 1;
    std::size_t slot = slotOf(inode, table.slots.size());
    while (table.slots[slot] != inode && table.slots[slot] != 0) {
        slot = (slot + 1) & mask;
    }
    return slot;
}

bool CountedIdentities::insertInto(DeviceTable& table, std::uint64_t inode) {
    // Up to seven eighths full: eight slots share a cache line, so probes stay cheap, and
    // growing, which briefly holds the table twice, comes late.
    if ((table.used + 1) * 8 > table.slots.size() * 7) {
        grow(table);
    }
    const std::size_t slot = slotFor(table, inode);
    if (table.slots[slot] == inode) {
        return false;
    }
    table.slots[slot] = inode;
    ++table.used;
    return true;
}

// Empties `slot`, moving back the inodes after it that could not take their own slot, so that
// every inode stays reachable from its own slot without gaps.
void CountedIdentities::erase(DeviceTable& table, std::size_t slot) {
    const std::size_t mask = table.slots.size() - 1;
    std::size_t empty = slot;
    for (std::size_t next = (slot + 1) & mask; table.slots[next] != 0; next = (next + 1) & mask) {
        const std::size_t home = slotOf(table.slots[next], table.slots.size());
        // Whether `home` lies cyclically in (empty, next]: then the inode stays where it is.
        const bool staysReachable =
            empty <= next ? (empty < home && home <= next) : (empty < home || home <= next);
        if (!staysReachable) {
            table.slots[empty] = table.slots[next];
            empty = next;
        }
    }
    table.slots[empty] = 0;
    --table.used;
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
