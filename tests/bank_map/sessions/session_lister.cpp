#include "tests/bank_map/sessions/session_lister.h"

#include <chrono>
#include <iterator>

namespace lumbrine {

namespace {

using namespace std::chrono_literals;

constexpr Duration interval = 1200ms;

TrackMetadata::TrackList serviceList(const SimulatedSession& session) {
    TrackMetadata::TrackList list;
    for (const SimulatedTrack& track : session.isOpen() ? session.tracks() : std::vector<SimulatedTrack>{})
        list.push_back({.index = static_cast<std::int64_t>(list.size()) + 1,
                        .name = track.name,
                        .isHidden = track.hidden || session.hiddenByFolder(track),
                        .id = "id " + std::to_string(track.id)});
    return list;
}

TrackMetadata::TrackList screenList(const SimulatedSession& session) {
    TrackMetadata::TrackList list;
    for (const int id : session.shownTracks())
        list.push_back({.name = session.find(id)->name});
    return list;
}

} // namespace

SessionLister::SessionLister(Studio& servedStudio, Witness kind) : studio(servedStudio), witness(kind) {
    if (witness == Witness::none) return;
    timer = studio.world.runtime.repeatOnMain(interval, [this] { tell(); });
}

void SessionLister::lag(Duration time) {
    fresh = studio.world.runtime.now() + time;
}

void SessionLister::tell() {
    const SimulatedSession session = studio.proTools->session();
    const bool isFresh = studio.world.runtime.now() >= fresh;
    if (isFresh) list = witness == Witness::service ? serviceList(session) : screenList(session);
    if (witness == Witness::service) return studio.parts().metadata.takeList(list);
    studio.parts().metadata.adopt({list}, "AX");
}

} // namespace lumbrine
