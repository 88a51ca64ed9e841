// What the LEDs of the strips' AUTO keys tell of automation modes: dark Off, green Read, orange Touch or Latch, red
// Write. A mode that can write flashes, with trim between two colours. Where the LEDs prove true, the receiver need not
// ask for modes, which disturbs the host.
//
// Not every host tells modes so. A strip's LED is believed once it has agreed with a probe's answer, a dark one only
// while another one was believed; and none is believed any more after one has stood still beside another answer.
// Main thread only.
#pragma once

#include "base/strip.h"
#include "platform/api/time.h"
#include "surface/auto_led_colour.h"

#include <array>
#include <cstdint>
#include <optional>

namespace lumbrine {

class AutoLeds {
public:
    // A colour that was shown so lately may come again with the next flash.
    static constexpr Duration flash = seconds(1.5);

    // Orange does not tell Touch from Latch, and no colour tells the end of trim: such a mode is asked for again.
    static constexpr Duration reminder = seconds(30);

    void shown(Strip strip, AutoLedColour colour, TimePoint now);

    // A probe has read that mode.
    void answered(Strip strip, std::uint8_t mode, TimePoint now);

    // The surface has gone: its LEDs miss changes.
    void forget(SurfaceID surface);

    // The LED says that the strip's mode still is the known one.
    bool confirms(Strip strip, std::uint8_t mode, TimePoint now) const;

    // A believed LED says that it is another one.
    bool contradicts(Strip strip, std::uint8_t mode, TimePoint now) const;

private:
    struct Led {
        std::optional<AutoLedColour> colour;
        TimePoint changed = distantPast;
        std::array<TimePoint, autoLedColours> last{}; // when a colour ended
        TimePoint answered = distantPast;
        bool agreed = false;
    };

    static std::optional<AutoLedColour> meaning(const Led& led, TimePoint now);

    std::array<Led, stripCount> leds{};
};

} // namespace lumbrine
