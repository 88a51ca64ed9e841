// What the demos say about their simulated session when they start.
#pragma once

#include "base/bilingual.h"
#include "simulator/simulated_session.h"

#include <string>

namespace lumbrine {

// The banks, and so the receiver's map, leave hidden tracks out.
inline std::string sessionLine(const SimulatedSession& session, int surfaces, const Bilingual& text) {
    const std::size_t all = session.tracks().size(), hidden = all - session.shownTracks().size();
    const std::string count = std::to_string(all), unseen = std::to_string(hidden), huis = std::to_string(surfaces);
    return text("Simulated session: " + count + " tracks" + (hidden == 0 ? "" : " (" + unseen + " hidden)") + " on " +
                    huis + " HUI surfaces",
                "模擬セッション: " + count + " トラック" + (hidden == 0 ? "" : "（うち非表示 " + unseen + "）") +
                    "、HUI サーフェス " + huis + " 台");
}

} // namespace lumbrine
