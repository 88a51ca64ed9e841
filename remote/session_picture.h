// What a client knows about the surfaces and the session from the messages that reached it. Plain values; two pictures
// can be compared, and so can a picture and what it should show.
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
    std::string name;     // the surface's four characters, without the blanks around them
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

// One track of the session. Rows, modes and pans come in messages of their own, in any order.
struct SessionTrack {
    std::optional<TrackRow> row;
    AutoMode autoMode = 0;
    SessPan pan;

    bool operator==(const SessionTrack&) const = default;
};

struct SessionPicture {
    // All strips that were ever told about; those from `shownStrips` on are not on any surface now.
    std::array<StripPicture, stripCount> strips;
    int shownStrips = stripsPerSurface;
    bool panRight = false;
    std::optional<std::uint16_t> bankOffset; // session track on the first strip; absent while unknown
    std::uint16_t trackCount = 0;

    // The position that the strips' values belong to. A new position comes before the values: while the receiver moves
    // the surfaces it holds them back, and sends all of them in the end, the last strip's fader after the others.
    std::optional<std::uint16_t> settledOffset;
    Transport transport;

    // By session index, at most 65,536. Tracks behind the end that the last bank position told of are gone.
    std::map<std::uint16_t, SessionTrack> session;

    StripPicture& at(Strip strip) { return strips[strip.slot()]; }
    const StripPicture& at(Strip strip) const { return strips[strip.slot()]; }

    // Takes in one message; true when it changed anything.
    bool apply(const ReceiverMessage& message);

    // The client's own move, which the receiver does not echo while the fader is held; true when it changed anything.
    bool moveFader(Strip strip, FaderValue value);

    bool operator==(const SessionPicture&) const = default;
};

} // namespace lumbrine::remote
