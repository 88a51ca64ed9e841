// A session that looks like somebody's mix.
#pragma once

#include "simulator/simulated_session.h"

#include <cstdint>

namespace lumbrine {

// `tracks` shown and hidden tracks together, at most 1,000: drums, bass, guitars, keys, strings, voices and returns,
// some with Japanese names, some of their short names alike, as they are in real sessions. Equal arguments give equal
// sessions. All names differ. About one track in sixteen is hidden; sessions of up to 8 tracks hide none.
SimulatedSession defaultSession(int tracks, std::uint64_t seed);

} // namespace lumbrine
