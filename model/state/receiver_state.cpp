#include "model/state/receiver_state.h"

namespace lumbrine {

std::optional<Strip> ReceiverState::stripShowing(const TrackOnStrip& track) const {
    const bool sameMap = track.map == mapNumber && !published.session.empty();
    if (track.index && sameMap && published.bankOffset >= 0) {
        const int slot = static_cast<int>(*track.index) - published.bankOffset;
        return slot < published.winW ? Strip::of(slot) : std::nullopt;
    }
    // Nobody knows where the surfaces are; but they have not been moved, so the track is where it was.
    const bool stays = track.move == bankMoves && published.strip(track.strip).name == track.name;
    return stays ? std::optional(track.strip) : std::nullopt;
}

} // namespace lumbrine
