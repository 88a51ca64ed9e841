// What the meter of a track shows while the transport plays: levels that rise and fall as music does, the same at the
// same place of the session each time it is played.
#pragma once

#include "platform/api/time.h"
#include "simulator/simulated_track.h"

#include <array>

namespace lumbrine {

using MeterLevels = std::array<int, 2>; // left and right, 0 dark to 12 clip

// A mono program drives the left side only.
MeterLevels meterLevels(const SimulatedTrack::MeterProgram& program, bool stereo, Duration position);

// The meter's segment for a level: -60 dBFS lights the first, 0 and more the twelfth.
int meterLevelOf(double dBFS);

} // namespace lumbrine
