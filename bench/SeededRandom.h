#pragma once

#include <cstdint>
#include <limits>
#include <random>

namespace tallowmere::bench {

// Values drawn from std::mt19937_64's raw output alone: the standard fixes that sequence but
// not what its distributions make of it, so a seed gives the same values with every library.
class SeededRandom {
public:
    explicit SeededRandom(std::uint64_t seed) : m_engine(seed) {}

    // A value in [0, bound), each equally likely; `bound` must be at least 1.
    std::uint64_t below(std::uint64_t bound) {
        constexpr std::uint64_t largest = std::numeric_limits<std::uint64_t>::max();
        // Draws at or past the last whole multiple of `bound` would favour small values.
        const std::uint64_t limit = largest - largest % bound;
        std::uint64_t draw = m_engine();
        while (draw >= limit) {
            draw = m_engine();
        }
        return draw % bound;
    }

    // True `perMille` times in a thousand.
    bool chance(std::uint64_t perMille) { return below(1000) < perMille; }

    // One row of `rows` (which have a `weight`), each drawn in proportion to its weight.
    template <typename Rows>
    const auto& pick(const Rows& rows) {
        std::uint64_t total = 0;
        for (const auto& row : rows) {
            total += row.weight;
        }
        std::uint64_t draw = below(total);
        for (const auto& row : rows) {
            if (draw < row.weight) {
                return row;
            }
            draw -= row.weight;
        }
        return rows.back();
    }

private:
    std::mt19937_64 m_engine;
};

}  // namespace tallowmere::bench
