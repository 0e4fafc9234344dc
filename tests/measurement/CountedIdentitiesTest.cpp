#include "measurement/CountedIdentities.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <set>
#include <utility>

namespace tallowmere {
namespace {

// Against a plain set: inodes that are sequential, random, collide in the table's hash, repeat
// across devices, or are zero, through many growths of the table.
TEST(CountedIdentities, CountsEachIdentityOnceAsASetWould) {
    CountedIdentities counted;
    std::set<std::pair<std::uint64_t, std::uint64_t>> reference;
    std::mt19937_64 random(7);
    const auto check = [&](std::uint64_t device, std::uint64_t inode) {
        EXPECT_EQ(counted.insert({device, inode}), reference.insert({device, inode}).second)
            << device << ":" << inode;
    };
    for (std::uint64_t inode = 0; inode < 50000; ++inode) {
        check(2049, inode);
    }
    for (int draw = 0; draw < 100000; ++draw) {
        check(2049 + random() % 3, random() % 120000);
    }
    // Equal in the low bits the table's hash starts from.
    for (std::uint64_t high = 0; high < 3000; ++high) {
        check(7, (high << 32) | 5);
    }
    check(~0ULL, 0);
    check(~0ULL, 0);
    check(~0ULL, ~0ULL);
    check(~0ULL, ~0ULL);
}

}  // namespace
}  // namespace tallowmere
