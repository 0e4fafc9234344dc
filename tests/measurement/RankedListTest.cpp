#include "measurement/RankedList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

namespace tallowmere {
namespace {

// Whatever the order items are offered in, and however they are split between lists that are
// then added together, the list keeps the first `capacity` by size, then by walk order.
TEST(RankedList, KeepsTheFirstInRankWhateverTheOfferingOrder) {
    std::mt19937 random(1125);
    for (int round = 0; round < 200; ++round) {
        const std::size_t capacity = random() % 12;
        std::vector<Ranked<int>> offered;
        const auto count = random() % 40;
        // A walk meets each entry once: positions are unique, here also far apart.
        std::uint64_t position = random() % 2;
        for (std::size_t index = 0; index < count; ++index) {
            position += 1 + (random() % 2 == 0 ? 0 : std::uint64_t{1} << (random() % 56));
            offered.push_back({static_cast<std::int64_t>(random() % 3), position,
                               static_cast<int>(offered.size())});
        }
        auto expected = offered;
        std::ranges::sort(expected, [](const auto& first, const auto& second) {
            return first.size != second.size ? first.size > second.size
                                             : first.position < second.position;
        });
        expected.resize(std::min(capacity, expected.size()));

        std::ranges::shuffle(offered, random);
        RankedList<int> whole(capacity);
        RankedList<int> part(capacity);
        for (std::size_t index = 0; index < offered.size(); ++index) {
            (index % 2 == 0 ? whole : part).add(offered[index]);
        }
        whole.add(std::move(part));
        const auto kept = std::move(whole).sorted();
        ASSERT_EQ(kept.size(), expected.size()) << "round " << round;
        for (std::size_t index = 0; index < kept.size(); ++index) {
            EXPECT_EQ(kept[index].item, expected[index].item) << "round " << round;
        }
    }
}

}  // namespace
}  // namespace tallowmere
