// The colour of a track, without transparency.
#pragma once

#include <cstdint>

namespace lumbrine {

class RGBColor {
public:
    // 0xRRGGBB; what stands above those 24 bits is dropped.
    constexpr explicit(false) RGBColor(std::uint32_t rrggbb) : value(rrggbb & 0xFFFFFF) {}

    constexpr std::uint8_t red() const { return static_cast<std::uint8_t>(value >> 16); }
    constexpr std::uint8_t green() const { return static_cast<std::uint8_t>(value >> 8); }
    constexpr std::uint8_t blue() const { return static_cast<std::uint8_t>(value); }

    constexpr bool operator==(const RGBColor&) const = default;

private:
    std::uint32_t value;
};

} // namespace lumbrine
