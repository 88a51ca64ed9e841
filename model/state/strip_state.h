// What the surfaces show of one strip, and what the client does with it.
#pragma once

#include "model/state/automation_mode.h"
#include "platform/api/time.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace lumbrine {

// One LED that Pro Tools may flash. HUI has no message for flashing: Pro Tools switches the LED on and off.
struct FlashingLed {
    bool rawOn = false;
    TimePoint lastEdge = distantPast;
    TimePoint blinkUntil = distantPast; // before it the LED counts as blinking
    int shortStreak = 0;                // edges in a row that came quickly after the one before

    bool isBlinking(TimePoint now) const { return now < blinkUntil; }

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

    bool operator==(const Ring&) const = default;
};

struct PanTarget {
    int position;  // ring position, 1-11
    int steps = 0; // taken so far
    TimePoint until = TimePoint::max();
    unsigned id; // of this seek: a step that an earlier seek has planned is not taken
};

struct StripState {
    static constexpr Duration handRest = seconds(1.5); // for so long after a move the hand counts as there

    std::string name; // without spaces at the ends
    double fader = 0; // 0.0-1.0, or more where somebody has sent more; Pro Tools' or the client's last word
    std::optional<double> shownFader; // Pro Tools' last word, of whichever track was here then; absent: none yet
    bool faderUnsure = false;         // the strip may have got another track whose fader Pro Tools keeps back
    FlashingLed mute;
    FlashingLed record;
    bool solo = false;
    bool select = false;
    std::array<Ring, 2> pan;       // left, right side of a stereo pan; position 0: unknown
    std::optional<Ring> shownRing; // Pro Tools' last word, of whichever side and track; absent: none yet
    std::uint8_t mode = autoModeUnknown;

    bool touched = false;                  // the client's finger is on the fader
    TimePoint movedByClient = distantPast; // or touched
    TimePoint leftByClient = distantPast;  // the finger was lifted, by the client or for it
    std::optional<PanTarget> panSeek;

    bool handOn(TimePoint now) const { return touched || now - movedByClient < handRest; }

    void liftFinger(TimePoint now) {
        if (std::exchange(touched, false)) leftByClient = now;
    }

    // Pro Tools may keep a fader back while it is touched, and shows it some time after the finger has gone.
    bool mayKeepFaderBack(TimePoint now) const { return handOn(now) || now - leftByClient < handRest; }

    // A value that was told for another track, or by nobody, is not told for this one.
    bool faderIsKnown() const { return !faderUnsure && (shownFader || name.empty()); }

    // Where Pro Tools keeps nothing back. True when the fader has become known, or another value.
    bool believeShownFader() {
        const double before = fader;
        fader = shownFader.value_or(fader);
        return std::exchange(faderUnsure, false) || fader != before;
    }

    // Some strip shows another name, so this one may show another track, of the same name too. A client's move was for
    // the former one, and Pro Tools may have yet to show the value of the new one.
    void mayHaveAnotherTrack(TimePoint now) {
        if (mayKeepFaderBack(now)) {
            faderUnsure = true;
        } else {
            believeShownFader();
        }
    }

    // The side that the V-Pots do not show was the former track's.
    void forgetHiddenPan(bool panRight) { pan[panRight ? 0 : 1] = {}; }

    // The strip is about to show another track. Its LED histories, mode and pan seek were the old track's.
    void forgetTrack() {
        mute.forgetEdges();
        record.forgetEdges();
        mode = autoModeUnknown;
        panSeek.reset();
    }
};

} // namespace lumbrine
