#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/FileIdentity.h"

namespace tallowmere {

// The files a scan has counted, by identity, so that a file met again under another name or
// through another mount counts once. A scan of a package store meets hundreds of thousands of
// them, so each takes 9 to 18 bytes: the inode alone, in an open-addressed table per device.
class CountedIdentities {
public:
    // True when `identity` was not counted yet; it is from now on.
    bool insert(const FileIdentity& identity);
    // As insert(), for a file that can only be met under its two names: its second meeting
    // forgets it, since nothing can meet it again. A store whose files have a second name close
    // by then holds only the files whose second name is still ahead.
    bool insertOneOfTwoNames(const FileIdentity& identity);

private:
    struct DeviceTable {
        std::uint64_t device = 0;
        std::vector<std::uint64_t> slots;  // 0 for none: no file has inode 0
        std::size_t used = 0;
        // Inode 0 is no file on Linux, but another system may report it.
        bool holdsInodeZero = false;
    };

    DeviceTable& tableOf(std::uint64_t device);
    // The slot that holds `inode`, else the empty one where it would go.
    static std::size_t slotFor(const DeviceTable& table, std::uint64_t inode);
    static bool insertInto(DeviceTable& table, std::uint64_t inode);
    static void erase(DeviceTable& table, std::size_t slot);
    static void grow(DeviceTable& table);

    std::vector<DeviceTable> m_devices;  // a scan meets very few
};

}  // namespace tallowmere
