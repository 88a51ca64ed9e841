// Everything that a client knows about one track of the session, from whatever message told it. Pure functions.
#pragma once

#include "remote/session_picture.h"

#include <cstdint>
#include <optional>
#include <string>

namespace lumbrine::remote {

struct TrackFacts {
    std::optional<Strip> strip = {}; // that shows the track now
    std::string name = {};           // empty while nothing has told it
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

using Offset = std::optional<std::uint16_t>; // the session track on the first strip, absent while it is unknown

// What the surfaces show of a track is newer than its row, once the strips have settled there.
TrackFacts factsOf(const SessionPicture& picture, Offset offset, std::uint16_t track);

// The session track on a strip and the other way round; absent where the strip shows none, or the track is not shown.
std::optional<std::uint16_t> trackOn(const SessionPicture& picture, Offset offset, Strip strip);
std::optional<Strip> stripShowing(const SessionPicture& picture, Offset offset, std::uint16_t track);

} // namespace lumbrine::remote
