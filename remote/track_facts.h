// Everything that a client knows about one track of the session, combined from all messages. Pure functions.
#pragma once

#include "remote/session_picture.h"

#include <cstdint>
#include <optional>
#include <string>

namespace lumbrine::remote {

struct TrackFacts {
    std::optional<Strip> strip = {}; // the strip that shows the track now
    std::string name = {};           // empty while unknown
    std::optional<FaderValue> fader = {};
    StripLights lights = {};
    bool inputMonitor = false;
    bool select = false;
    std::optional<RGBColor> color = {};
    AutoMode autoMode = 0;
    SessPan pan = {};
    std::string comment = {};

    bool operator==(const TrackFacts&) const = default;
};

using Offset = std::optional<std::uint16_t>; // the session track on the first strip; absent while unknown

// When the strips have settled on this bank position, their values are newer than those in the track's row, and win.
TrackFacts factsOf(const SessionPicture& picture, Offset offset, std::uint16_t track);

// The session track on a strip, and the strip that shows a session track. Absent when there is none.
std::optional<std::uint16_t> trackOn(const SessionPicture& picture, Offset offset, Strip strip);
std::optional<Strip> stripShowing(const SessionPicture& picture, Offset offset, std::uint16_t track);

} // namespace lumbrine::remote
