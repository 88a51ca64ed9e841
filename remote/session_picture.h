// A client's picture of the surfaces and of the session, built from the messages that it has received. Plain values
// that can be compared.
#pragma once

#include "remote/receiver_message.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace lumbrine::remote {

struct StripPicture {
    std::string name;     // the surface's four characters, without blanks at either end
    std::string fullName; // empty when there is none
    FaderValue fader = FaderValue::ofRaw(0);
    StripLights lights;
    bool select = false;
    std::array<RingPosition, 2> pan; // by PanSide
    std::optional<RGBColor> color;
    bool inputMonitor = false;
    AutoMode autoMode = 0;
    MeterLevels meters;

    const RingPosition& ring(PanSide side) const { return pan[static_cast<std::size_t>(side)]; }

    bool operator==(const StripPicture&) const = default;
};

// One track of the session. Its row, mode and pan arrive in separate messages, in any order.
struct SessionTrack {
    std::optional<TrackRow> row;
    AutoMode autoMode = 0;
    SessPan pan;

    bool operator==(const SessionTrack&) const = default;
};

struct SessionPicture {
    // All strips. Those from `shownStrips` on are on no surface now; their values are the last ones received.
    std::array<StripPicture, stripCount> strips;
    int shownStrips = stripsPerSurface;
    bool panRight = false;
    std::optional<std::uint16_t> bankOffset; // session track on the first strip; absent while unknown
    std::uint16_t trackCount = 0;

    // The bank position to which the values of the strips belong. A new position arrives before the new values: while
    // the receiver moves the surfaces it sends no values, and at the end it sends all of them, the fader of the last
    // strip as the last one.
    std::optional<std::uint16_t> settledOffset;
    Transport transport;

    // By session index, at most 65,536. Tracks beyond the track count of the last BankPos are removed.
    std::map<std::uint16_t, SessionTrack> session;

    StripPicture& at(Strip strip) { return strips[strip.slot()]; }
    const StripPicture& at(Strip strip) const { return strips[strip.slot()]; }

    // Applies one message. Returns true when something changed.
    bool apply(const ReceiverMessage& message);

    // Applies the client's own move, which the receiver does not echo while the fader is held. Returns true when
    // something changed.
    bool moveFader(Strip strip, FaderValue value);

    bool operator==(const SessionPicture&) const = default;
};

} // namespace lumbrine::remote
