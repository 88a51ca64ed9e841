// The colours of the LED in a strip's AUTO key: a red and a green one behind one window.
#pragma once

#include <cstddef>
#include <cstdint>

namespace lumbrine {

enum class AutoLedColour { dark, green, orange, red };
inline constexpr std::size_t autoLedColours = 4;

// From the value of the port's controller.
constexpr AutoLedColour autoLedColourOf(std::uint8_t value) {
    const bool red = (value & 0x40) != 0;
    const bool green = (value & 0x20) != 0;
    if (red) return green ? AutoLedColour::orange : AutoLedColour::red;
    return green ? AutoLedColour::green : AutoLedColour::dark;
}

} // namespace lumbrine
