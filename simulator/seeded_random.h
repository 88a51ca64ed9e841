// Random numbers that replay: equal seeds give equal numbers on every system.
#pragma once

#include <cstdint>

namespace lumbrine {

class SeededRandom {
public:
    explicit constexpr SeededRandom(std::uint64_t seed) : state(seed) {}

    constexpr std::uint64_t next() {
        state += 0x9E3779B97F4A7C15;
        std::uint64_t mixed = state;
        mixed = (mixed ^ mixed >> 30) * 0xBF58476D1CE4E5B9;
        mixed = (mixed ^ mixed >> 27) * 0x94D049BB133111EB;
        return mixed ^ mixed >> 31;
    }

    // 0 to count - 1. Precondition: count is not 0.
    constexpr std::uint64_t below(std::uint64_t count) { return next() % count; }

    // True about once in `count` calls. Precondition: count is not 0.
    constexpr bool oneIn(std::uint64_t count) { return below(count) == 0; }

    // At least 0 and less than 1.
    constexpr double unit() { return static_cast<double>(next() >> 11) * 0x1.0p-53; }

private:
    std::uint64_t state;
};

} // namespace lumbrine
