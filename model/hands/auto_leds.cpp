#include "model/hands/auto_leds.h"

#include "model/state/automation_mode.h"

#include <algorithm>

namespace lumbrine {

namespace {

constexpr std::uint8_t trim = 8;

AutoLedColour colourOf(std::uint8_t mode) {
    switch (mode & 7) {
    case 1:
        return AutoLedColour::green;
    case 2:
    case 3:
        return AutoLedColour::orange;
    case 4:
        return AutoLedColour::red;
    default:
        return AutoLedColour::dark;
    }
}

bool mayChangeUnseen(std::uint8_t mode) {
    return (mode & trim) != 0 || colourOf(mode) == AutoLedColour::orange;
}

} // namespace

void AutoLeds::shown(Strip strip, AutoLedColour colour, TimePoint now) {
    Led& led = leds[strip.slot()];
    if (led.colour == colour) return;
    if (led.colour) led.last[static_cast<std::size_t>(*led.colour)] = now;
    led.colour = colour;
    led.changed = now;
}

void AutoLeds::forget(SurfaceID surface) {
    for (int i = 0; i < stripsPerSurface; ++i)
        leds[Strip::of(surface, i)->slot()] = {};
}

// Of the colours of a flash, the one that tells of writing.
std::optional<AutoLedColour> AutoLeds::meaning(const Led& led, TimePoint now) {
    if (!led.colour) return std::nullopt;
    for (const AutoLedColour colour : {AutoLedColour::red, AutoLedColour::orange, AutoLedColour::green})
        if (led.colour == colour || now - led.last[static_cast<std::size_t>(colour)] < flash) return colour;
    return AutoLedColour::dark;
}

void AutoLeds::answered(Strip strip, std::uint8_t mode, TimePoint now) {
    Led& led = leds[strip.slot()];
    const auto told = meaning(led, now);
    if (mode == autoModeUnknown || !told) return;
    led.answered = now;
    if (told == colourOf(mode)) {
        led.agreed = told != AutoLedColour::dark || std::ranges::any_of(leds, &Led::agreed);
    } else if (now - led.changed >= flash) {
        for (Led& each : leds)
            each.agreed = false;
    }
}

bool AutoLeds::confirms(Strip strip, std::uint8_t mode, TimePoint now) const {
    const Led& led = leds[strip.slot()];
    if (!led.agreed || mode == autoModeUnknown || meaning(led, now) != colourOf(mode)) return false;
    return !mayChangeUnseen(mode) || now - led.answered < reminder;
}

bool AutoLeds::contradicts(Strip strip, std::uint8_t mode, TimePoint now) const {
    const Led& led = leds[strip.slot()];
    return led.agreed && mode != autoModeUnknown && meaning(led, now) != colourOf(mode);
}

} // namespace lumbrine
