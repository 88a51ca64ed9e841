// What the demos say about their simulated session when they start.
#pragma once

#include "simulator/simulated_session.h"

#include <string>

namespace lumbrine {

// The banks, and so the receiver's map, leave hidden tracks out.
inline std::string sessionLine(const SimulatedSession& session, int surfaces) {
    const std::size_t all = session.tracks().size(), hidden = all - session.shownTracks().size();
    return "Simulated session: " + std::to_string(all) + " tracks" +
           (hidden == 0 ? "" : " (" + std::to_string(hidden) + " hidden)") + " on " + std::to_string(surfaces) +
           " HUI surfaces";
}

} // namespace lumbrine
