// A session that looks like somebody's mix.
#pragma once

#include "simulator/simulated_session.h"

#include <cstdint>

namespace lumbrine {

struct SessionStyle {
    bool japaneseNames = false; // all tracks have them
    int folders = 0;            // as many of the tracks are folders of three others; the first is closed, the next open
};

// `tracks` shown and hidden tracks together, at most 1,000: drums, bass, guitars, keys, strings, voices and returns,
// some with Japanese names, some of their short names alike, as they are in real sessions. Equal arguments give equal
// sessions. All names differ. About one track in sixteen is hidden; sessions of up to 8 tracks hide none.
SimulatedSession defaultSession(int tracks, std::uint64_t seed, SessionStyle style = {});

// Another session made from the same template: names, order, folders and groups are alike, all values are not.
SimulatedSession sessionOfSameTemplate(const SimulatedSession& session, std::uint64_t seed);

} // namespace lumbrine
