// SplitMix64: the random numbers behind every choice in virtual time. The same seed gives the same numbers on every
// system, which the standard library's distributions do not promise.
#pragma once

#include <cstdint>

namespace lumbrine {

inline std::uint64_t nextSplitMix(std::uint64_t& state) {
    state += 0x9e3779b97f4a7c15;
    std::uint64_t value = state;
    value = (value ^ value >> 30) * 0xbf58476d1ce4e5b9;
    value = (value ^ value >> 27) * 0x94d049bb133111eb;
    return value ^ value >> 31;
}

} // namespace lumbrine
