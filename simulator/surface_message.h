// What a HUI surface tells its host, and the decoder that finds it in the bytes of the surface's port.
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

struct Reset { // the surface has just appeared
    bool operator==(const Reset&) const = default;
};
struct PingReply {
    bool operator==(const PingReply&) const = default;
};
struct SwitchEdge { // port 0 of a strip's zone is its fader's touch
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
    int pot;    // 0-7 the strips', 8-11 the others
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

// Takes the bytes in pieces of any size: a message may come byte by byte, with running status, with realtime bytes in
// its middle and SysEx before or after it. Whatever is no HUI message is passed over. Allocates nothing.
class SurfaceDecoder {
public:
    void feed(ByteView bytes, const std::function<void(const SurfaceMessage&)>& take);

    // As if nothing had come before; a reset byte does the same.
    void forget();

private:
    std::optional<SurfaceMessage> status(std::uint8_t byte);
    std::optional<SurfaceMessage> data(std::uint8_t byte);
    std::optional<SurfaceMessage> controller(std::uint8_t number, std::uint8_t value);

    std::uint8_t runningStatus = 0;    // 0: data bytes belong to nothing
    std::optional<std::uint8_t> first; // first data byte of a message
    std::optional<int> zone;           // selected last, when it exists
    std::array<int, 8> faderHigh{};    // 1 more than the last high half; 0: none yet
};

} // namespace lumbrine
