#include "model/state/receiver_state.h"

namespace lumbrine {

TrackRef ReceiverState::trackAt(std::size_t index) const {
    const Track& track = published.session.tracks[index];
    return {.index = index, .track = track.identity(), .display = track.display, .map = mapNumber};
}

std::optional<std::size_t> ReceiverState::placeOf(const TrackRef& track) const {
    const std::vector<Track>& tracks = published.session.tracks;
    const bool hasSame = track.index < tracks.size();
    if (track.track.name.empty() || (hasSame && !tracks[track.index].name)) {
        // Nobody knows more of it than what the displays said.
        const bool stays = hasSame && track.map == mapNumber && tracks[track.index].display == track.display;
        return stays ? std::optional(track.index) : std::nullopt;
    }
    const auto isThat = [&](const Track& other) { return isSame(other.identity(), track.track); };
    if (hasSame && isThat(tracks[track.index])) return track.index;
    const auto found = std::ranges::find_if(tracks, isThat);
    if (found == tracks.end()) return std::nullopt;
    return static_cast<std::size_t>(found - tracks.begin());
}

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
