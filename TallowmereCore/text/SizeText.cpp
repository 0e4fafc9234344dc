#include "text/SizeText.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace tallowmere::SizeText {

namespace {

struct Unit {
    std::string_view name;
    int decimals;
    // The unit's size divided by 10^decimals: one step of the last digit shown, in bytes.
    std::uint64_t step;
};

constexpr std::array<Unit, 6> units{{
    {"KB", 0, 1'000},
    {"MB", 1, 100'000},
    {"GB", 2, 10'000'000},
    {"TB", 2, 10'000'000'000},
    {"PB", 2, 10'000'000'000'000},
    {"EB", 2, 10'000'000'000'000'000},
}};

std::uint64_t powerOfTen(int exponent) {
    std::uint64_t result = 1;
    for (int i = 0; i < exponent; ++i) {
        result *= 10;
    }
    return result;
}

// `magnitude` in steps of `step`, rounded half away from zero. No overflow: the remainder is
// below 10^16, so twice it fits easily.
std::uint64_t roundedSteps(std::uint64_t magnitude, std::uint64_t step) {
    const std::uint64_t steps = magnitude / step;
    return magnitude % step * 2 >= step ? steps + 1 : steps;
}

// `steps` counted in units of 10^-decimals, as a decimal number without trailing zeros.
std::string decimalText(std::uint64_t steps, int decimals) {
    const std::uint64_t scale = powerOfTen(decimals);
    std::string text = std::to_string(steps / scale);
    std::string fraction = std::to_string(steps % scale + scale).substr(1);
    while (!fraction.empty() && fraction.back() == '0') {
        fraction.pop_back();
    }
    return fraction.empty() ? text : text + "." + fraction;
}

std::string magnitudeText(std::uint64_t magnitude) {
    if (magnitude == 0) {
        return "0 KB";
    }
    if (magnitude == 1) {
        return "1 byte";
    }
    if (magnitude < 1000) {
        return std::to_string(magnitude) + " bytes";
    }
    for (std::size_t i = 0;; ++i) {
        const Unit& unit = units[i];
        const std::uint64_t steps = roundedSteps(magnitude, unit.step);
        // The largest signed 64-bit count is about 9.22 EB, so the last unit always fits.
        if (steps < 1000 * powerOfTen(unit.decimals) || i + 1 == units.size()) {
            return decimalText(steps, unit.decimals) + " " + std::string(unit.name);
        }
    }
}

}  // namespace

std::string bytes(std::int64_t count) {
    if (count >= 0) {
        return magnitudeText(static_cast<std::uint64_t>(count));
    }
    // Negating in unsigned arithmetic keeps INT64_MIN's magnitude, which int64 cannot hold.
    return "-" + magnitudeText(0 - static_cast<std::uint64_t>(count));
}

}  // namespace tallowmere::SizeText
