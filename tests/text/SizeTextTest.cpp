#include "text/SizeText.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <utility>

namespace tallowmere {
namespace {

void expectTexts(std::initializer_list<std::pair<std::int64_t, std::string>> cases) {
    for (const auto& [count, text] : cases) {
        EXPECT_EQ(SizeText::bytes(count), text) << count;
    }
}

TEST(SizeText, WritesEachUnitAtItsPrecisionWithoutTrailingZeros) {
    expectTexts({{0, "0 KB"},
                 {1, "1 byte"},
                 {2, "2 bytes"},
                 {999, "999 bytes"},
                 {1'000, "1 KB"},
                 {2'000'000, "2 MB"},
                 {1'500'000, "1.5 MB"},
                 {1'234'567'890, "1.23 GB"},
                 {1'200'000'000, "1.2 GB"},
                 {1'500'000'000'000, "1.5 TB"},
                 {2'340'000'000'000'000, "2.34 PB"},
                 {1'000'000'000'000'000'000, "1 EB"}});
}

TEST(SizeText, RoundsHalfAwayFromZeroAndCarriesIntoTheNextUnit) {
    expectTexts({{1'499, "1 KB"},
                 {1'500, "2 KB"},
                 {999'499, "999 KB"},
                 {999'500, "1 MB"},
                 {1'050'000, "1.1 MB"},
                 {999'949'999, "999.9 MB"},
                 {999'950'000, "1 GB"},
                 {1'005'000'000, "1.01 GB"},
                 {999'995'000'000, "1 TB"},
                 {999'995'000'000'000'000, "1 EB"}});
}

TEST(SizeText, WritesNegativeCountsAsTheirMagnitude) {
    expectTexts({{-1, "-1 byte"},
                 {-999, "-999 bytes"},
                 {-1'500'000, "-1.5 MB"},
                 {std::numeric_limits<std::int64_t>::max(), "9.22 EB"},
                 {std::numeric_limits<std::int64_t>::min(), "-9.22 EB"}});
}

}  // namespace
}  // namespace tallowmere
