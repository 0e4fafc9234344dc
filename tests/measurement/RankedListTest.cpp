#include "measurement/RankedList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace tallowmere {
namespace {

// Orders that share long beginnings, begin one another, and hold bytes above 0x7F, as walk
// orders do: ties on size are settled by them.
std::string randomOrder(std::mt19937& random) {
    static const std::string bytes = {'\x00', '\x01', '\x7f', '\x80', '\xc0', '\xff'};
    std::string order(random() % 3 == 0 ? "\x05\x05\x05\x05\x05\x05\x05" : "");
    const auto length = random() % 6;
    for (std::size_t index = 0; index < length; ++index) {
        order += bytes[random() % bytes.size()];
    }
    return order;
}

// Whatever the order items are offered in, and however they are split between lists that are
// then added together, the list keeps the first `capacity` by size, then by walk order.
TEST(RankedList, KeepsTheFirstInRankWhateverTheOfferingOrder) {
    std::mt19937 random(1125);
    for (int round = 0; round < 200; ++round) {
        const std::size_t capacity = random() % 12;
        std::vector<Ranked<int>> offered;
        std::vector<std::string> seen;
        const auto count = random() % 40;
        for (std::size_t index = 0; index < count; ++index) {
            std::string order = randomOrder(random);
            if (std::ranges::find(seen, order) != seen.end()) {
                continue;  // a walk meets each entry once
            }
            seen.push_back(order);
            offered.push_back(
                {static_cast<std::int64_t>(random() % 3), order, static_cast<int>(offered.size())});
        }
        auto expected = offered;
        std::ranges::sort(expected, [](const auto& first, const auto& second) {
            return first.size != second.size ? first.size > second.size
                                             : first.order < second.order;
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
