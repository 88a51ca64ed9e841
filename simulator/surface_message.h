// The messages of a HUI surface to its host, and the decoder for the bytes of its port.
#pragma once

#include "base/bytes.h"
#include "base/fader_value.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <variant>

namespace lumbrine {

namespace from_surface {

struct Reset { // FF: the surface has just appeared
    bool operator==(const Reset&) const = default;
};
struct PingReply {
    bool operator==(const PingReply&) const = default;
};
struct SwitchEdge { // port 0 in the zone of a strip is the touch of its fader
    int zone;       // 00-1D
    int port;       // 0-7
    bool on;
    bool operator==(const SwitchEdge&) const = default;
};
struct FaderMoved {
    int strip; // 0-7
    FaderValue position;
    bool operator==(const FaderMoved&) const = default;
};
struct VPotTurned {
    int pot;    // 0-7 of the strips, 8-11 the parameter pots
    int clicks; // clockwise when positive; never 0
    bool operator==(const VPotTurned&) const = default;
};
struct JogTurned {
    int clicks;
    bool operator==(const JogTurned&) const = default;
};

} // namespace from_surface

using SurfaceMessage = std::variant<from_surface::Reset, from_surface::PingReply, from_surface::SwitchEdge,
                                    from_surface::FaderMoved, from_surface::VPotTurned, from_surface::JogTurned>;

// Decodes bytes in pieces of any size: messages may arrive byte by byte, with running status, with realtime bytes
// inside and with SysEx between them. Skips everything that is not a HUI message. Allocates nothing.
class SurfaceDecoder {
public:
    void feed(ByteView bytes, const std::function<void(const SurfaceMessage&)>& take);

    // Forgets all earlier bytes. A reset byte does the same.
    void forget();

private:
    std::optional<SurfaceMessage> status(std::uint8_t byte);
    std::optional<SurfaceMessage> data(std::uint8_t byte);
    std::optional<SurfaceMessage> controller(std::uint8_t number, std::uint8_t value);

    std::uint8_t runningStatus = 0;    // 0: data bytes are ignored
    std::optional<std::uint8_t> first; // the first data byte of an incomplete message
    std::optional<int> zone;           // the zone selected last, if it exists
    std::array<int, 8> faderHigh{};    // the last high half plus 1; 0 before the first
};

} // namespace lumbrine
