// Tracks of a host, written down by hand.
#pragma once

#include "simulator/simulated_track.h"

#include <string>
#include <utility>

namespace lumbrine::simulation {

inline SimulatedTrack trackCalled(std::string name, int id, int fader = 0) {
    SimulatedTrack track;
    track.id = id;
    track.name = std::move(name);
    track.fader = FaderValue::ofRaw(static_cast<std::uint16_t>(fader));
    return track;
}

} // namespace lumbrine::simulation
