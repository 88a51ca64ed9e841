// Everything that one surface shows at one moment, except its meters.
#pragma once

#include "simulator/hui_address.h"
#include "simulator/short_name.h"

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <string>

namespace lumbrine {

using LEDs = std::bitset<static_cast<std::size_t>(hui_address::zoneCount) * hui_address::portCount>;

constexpr std::size_t ledIndex(int zone, int port) {
    return static_cast<std::size_t>(zone) * hui_address::portCount + static_cast<std::size_t>(port);
}

struct SurfacePicture {
    static constexpr std::size_t mainDisplayLength = 80;

    static constexpr std::uint8_t blankDigit = 0x20;

    SurfacePicture() {
        displays.fill(blankDisplay);
        counter.fill(blankDigit);
    }

    std::array<int, hui_address::stripCountOfSurface> tracks{}; // ids, not sent; 0: none
    std::array<DisplayText, hui_address::displayCount> displays;
    std::array<std::uint16_t, hui_address::stripCountOfSurface> faders{}; // as sent, 0-16383
    std::bitset<hui_address::stripCountOfSurface> withheldFaders;         // not to be sent now
    std::array<std::uint8_t, hui_address::ringCount> rings{};
    LEDs leds;
    std::array<std::uint8_t, hui_address::stripCountOfSurface> autoLEDs{}; // as sent, without the port
    std::string mainDisplay = std::string(mainDisplayLength, ' ');
    std::array<std::uint8_t, 8> counter; // digits, right-most first; bit 4 adds a separator after the digit
};

} // namespace lumbrine
