// What the accepted datagrams ask of one surface, told from their bytes by the protocol's own rules.
#pragma once

#include "tests/simulation/recording_sockets.h"
#include "tests/simulation/surface_wire.h"

#include <optional>
#include <vector>

namespace lumbrine::simulation {

// What a datagram asks of one strip, 0-15; absent where it asks for something else, or for nothing.
std::optional<WireAction> actionAskedBy(const ReceivedDatagram& datagram);

// What has to appear on the wire of surface 0 or 1, in this order for each kind: fader moves; touches and releases;
// presses of select, mute, solo and record (as edges with value 1); V-Pot turns.
std::vector<WireAction> askedOf(const std::vector<ReceivedDatagram>& accepted, int surface);

} // namespace lumbrine::simulation
