// Makes sessions that look like a real mix.
#pragma once

#include "simulator/simulated_session.h"

#include <cstdint>

namespace lumbrine {

struct SessionStyle {
    bool japaneseNames = false; // true: all tracks have Japanese names
    int folders = 0; // tracks that are folders with three members: the first is closed, the next open, and so on
};

// Makes a session of `tracks` tracks, at most 1,000, hidden ones included: drums, bass, guitars, keys, strings, voices
// and returns. Some have Japanese names, and some share a short name, as in real sessions; all full names differ. Equal
// arguments give equal sessions. About one track in sixteen is hidden; with up to 8 tracks none is.
SimulatedSession defaultSession(int tracks, std::uint64_t seed, SessionStyle style = {});

// Makes another session from the same template: names, order, folders and groups are equal, the values differ.
SimulatedSession sessionOfSameTemplate(const SimulatedSession& session, std::uint64_t seed);

} // namespace lumbrine
