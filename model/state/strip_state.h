// What the surfaces show of one strip, and what the client does with it.
#pragma once

#include "model/state/automation_mode.h"
#include "platform/api/time.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace lumbrine {

// One LED that Pro Tools may flash. HUI has no message for flashing: Pro Tools switches the LED on and off.
struct FlashingLed {
    bool rawOn = false;
    TimePoint lastEdge = distantPast;
    TimePoint blinkUntil = distantPast; // before it the LED counts as blinking
    int shortStreak = 0;                // edges in a row that came quickly after the one before

    // The next edge is the first of another track's LED. What the LED shows stays: Pro Tools says when that changes.
    void forgetEdges() {
        lastEdge = distantPast;
        blinkUntil = distantPast;
        shortStreak = 0;
    }
};

// The ring of LEDs around a V-Pot.
struct Ring {
    int position = 0; // 0-15, as received
    bool centre = false;
};

struct PanTarget {
    int position;  // ring position, 1-11
    int steps = 0; // taken so far
    unsigned id;   // of this seek: a step that an earlier seek has planned is not taken
};

struct StripState {
    std::string name; // without spaces at the ends
    double fader = 0; // 0.0-1.0, or more where somebody has sent more
    FlashingLed mute;
    FlashingLed record;
    bool solo = false;
    bool select = false;
    std::array<Ring, 2> pan; // left, right side of a stereo pan
    std::uint8_t mode = autoModeUnknown;

    bool touched = false;                  // the client's finger is on the fader
    TimePoint movedByClient = distantPast; // or touched
    std::optional<PanTarget> panSeek;

    // The strip is about to show another track. Its LED histories, mode and pan seek were the old track's.
    void forgetTrack() {
        mute.forgetEdges();
        record.forgetEdges();
        mode = autoModeUnknown;
        panSeek.reset();
    }
};

} // namespace lumbrine
