#include "tests/simulation/actions.h"

#include <algorithm>
#include <cstdlib>

namespace lumbrine::simulation {

namespace {

enum Opcode : std::uint8_t {
    faderMove = 0x01,
    faderTouch = 0x02,
    faderRelease = 0x03,
    mutePress = 0x04,
    soloPress = 0x05,
    recArmPress = 0x06,
    vpotDelta = 0x07,
    selectPress = 0x0D,
};

// 0 when the opcode is no press.
int pressedPort(std::uint8_t opcode) {
    switch (opcode) {
    case selectPress:
        return 1;
    case mutePress:
        return 2;
    case soloPress:
        return 3;
    case recArmPress:
        return 7;
    default:
        return 0;
    }
}

std::optional<WireAction> actionOf(const ReceivedDatagram& datagram, int strip) {
    const Bytes& bytes = datagram.bytes;
    using Kind = WireAction::Kind;
    switch (bytes[1]) {
    case faderMove:
        if (bytes.size() < 5) return std::nullopt;
        return WireAction{datagram.at, Kind::fader, strip, 0, std::min(bytes[3] * 256 + bytes[4], 16383)};
    case faderTouch:
        return WireAction{datagram.at, Kind::edge, strip, 0, 1};
    case faderRelease:
        return WireAction{datagram.at, Kind::edge, strip, 0, 0};
    case vpotDelta: {
        if (bytes.size() < 4 || bytes[3] == 0) return std::nullopt;
        const int delta = bytes[3] < 128 ? bytes[3] : bytes[3] - 256;
        const int clicks = std::min(std::abs(delta), 63);
        return WireAction{datagram.at, Kind::vpot, strip, 0, delta > 0 ? 64 + clicks : clicks};
    }
    default:
        if (const int port = pressedPort(bytes[1])) return WireAction{datagram.at, Kind::edge, strip, port, 1};
        return std::nullopt;
    }
}

} // namespace

std::optional<WireAction> actionAskedBy(const ReceivedDatagram& datagram) {
    if (datagram.bytes.size() < 3 || datagram.bytes[0] != 1 || datagram.bytes[2] > 15) return std::nullopt;
    return actionOf(datagram, datagram.bytes[2]);
}

std::vector<WireAction> askedOf(const std::vector<ReceivedDatagram>& accepted, int surface) {
    std::vector<WireAction> asked;
    for (const ReceivedDatagram& datagram : accepted) {
        auto action = actionAskedBy(datagram);
        if (!action || action->number / 8 != surface) continue;
        action->number %= 8;
        asked.push_back(*action);
    }
    return asked;
}

} // namespace lumbrine::simulation
