#include "model/track_metadata.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace lumbrine {

TrackMetadata::TrackMetadata(const Jobs& modelJobs, const ReceiverState& receiverState, ScriptingLink& scriptingLink,
                             TrackAdoption& trackAdoption)
    : jobs(modelJobs), state(receiverState), scripting(scriptingLink), adoption(trackAdoption),
      namesRefreshInFlight(modelJobs.runtime) {
    adoption.onNewNames = [this] { refreshComments(); };
}

void TrackMetadata::refreshFullNames() {
    {
        const Lock lock(namesRefreshInFlight);
        if (std::exchange(namesRefreshRunning, true)) return;
    }
    scripting.onQueue([this](PTSLClient& ptsl) {
        refresh(ptsl);
        const Lock lock(namesRefreshInFlight);
        namesRefreshRunning = false;
    });
}

void TrackMetadata::refresh(PTSLClient& ptsl) {
    auto tracks = ptsl.trackList();
    if (!tracks) {
        jobs.runOnMain([this, error = tracks.error()] { scripting.notePTSLFailure(error); });
        return;
    }
    std::vector<PTSLTrack> visible;
    std::ranges::copy_if(*tracks, std::back_inserter(visible), [](const PTSLTrack& track) { return !track.isHidden; });
    // What the surfaces count: hidden tracks are not there as a rule.
    jobs.runOnMain([this, candidates = std::vector{std::move(visible), *std::move(tracks)}] {
        adoption.adopt(candidates, "PTSL");
        scripting.notePTSLSuccess();
    });
}

void TrackMetadata::toggleInputMonitor(Strip strip) {
    assert(jobs.runtime.onMain());
    const int track = state.published.bankOffset + strip.index();
    const std::vector<std::string>& names = state.published.trackMapFull;
    if (state.published.bankOffset < 0 || track >= std::ssize(names)) return;
    const std::string& name = names[static_cast<std::size_t>(track)];
    if (name.empty()) return;
    scripting.onQueue([this, name](PTSLClient& ptsl) { toggle(ptsl, name); });
}

void TrackMetadata::toggle(PTSLClient& ptsl, const std::string& trackName) {
    const auto noteFailure = [this](const PTSLFailure& error) {
        jobs.runOnMain([this, error] { scripting.notePTSLFailure(error); });
    };
    const auto tracks = ptsl.trackList();
    if (!tracks) return noteFailure(tracks.error());
    const auto track = std::ranges::find(*tracks, trackName, &PTSLTrack::name);
    if (track == tracks->end()) return;
    const auto set = ptsl.setInputMonitor(trackName, !track->isInputMonitoringOn);
    if (!set) noteFailure(set.error());
}

} // namespace lumbrine
