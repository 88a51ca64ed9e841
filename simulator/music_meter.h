// The meter of a track while the transport plays: levels that rise and fall like music, and are the same each time the
// same place of the session is played.
#pragma once

#include "platform/api/time.h"
#include "simulator/simulated_track.h"

#include <array>

namespace lumbrine {

using MeterLevels = std::array<int, 2>; // left and right, 0 dark to 12 clip

// The levels at a position. Without `stereo`, only the left side is used.
MeterLevels meterLevels(const SimulatedTrack::MeterProgram& program, bool stereo, Duration position);

// The number of lit segments for a level: 1 from -60 dBFS, 12 from 0 dBFS.
int meterLevelOf(double dBFS);

} // namespace lumbrine
