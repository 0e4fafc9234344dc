#include "measurement/CountedIdentities.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
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

// Files met under each of their two names, the second meeting forgetting them, mixed with files
// that are remembered for good: against a count of meetings, through growths of the table and
// the moves that forgetting makes among inodes that share slots.
TEST(CountedIdentities, ForgetsAFileOfTwoNamesOnceBothWereMet) {
    const auto meet = [](std::uint64_t inodes, bool someKept, std::uint64_t seed) {
        CountedIdentities counted;
        std::map<std::pair<std::uint64_t, std::uint64_t>, int> meetings;
        std::set<std::pair<std::uint64_t, std::uint64_t>> kept;
        std::mt19937_64 random(seed);
        for (int draw = 0; draw < 200000; ++draw) {
            const std::uint64_t device = 1 + random() % 2;
            // Many alike in the bits the table's hash starts from.
            const std::uint64_t inode =
                random() % 4 == 0 ? (random() % 64) << 32 : random() % inodes;
            const std::pair key{device, inode};
            if (someKept && inode % 5 == 0) {
                ASSERT_EQ(counted.insert({device, inode}), kept.insert(key).second) << draw;
                continue;
            }
            ASSERT_EQ(counted.insertOneOfTwoNames({device, inode}), meetings[key]++ % 2 == 0)
                << draw;
        }
    };
    meet(40000, true, 11);
    // About 800 of 1,600 files met once at any time: a table of 1,024 slots that stays
    // nearly full, where runs of taken slots wrap around its end.
    meet(1600, false, 12);
    CountedIdentities counted;
    EXPECT_TRUE(counted.insertOneOfTwoNames({3, 0}));
    EXPECT_FALSE(counted.insertOneOfTwoNames({3, 0}));
    EXPECT_TRUE(counted.insertOneOfTwoNames({3, 0}));
}

}  // namespace
}  // namespace tallowmere
