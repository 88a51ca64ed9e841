#include "model/tracks/track_metadata.h"

#include "screen/pt_mix_comments.h"
#include "screen/pt_track_list.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace lumbrine {

TrackMetadata::TrackMetadata(const Jobs& modelJobs, ReceiverState& receiverState, Accessibility& access,
                             ScriptingLink& scriptingLink, TrackAdoption& trackAdoption)
    : jobs(modelJobs), state(receiverState), accessibility(access), scripting(scriptingLink), adoption(trackAdoption),
      comments(receiverState), namesRefreshInFlight(modelJobs.runtime) {
    adoption.onNewNames = [this] {
        comments.followNames();
        refreshComments();
    };
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
        if (accessibility.isTrusted()) refreshFromScreen();
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

void TrackMetadata::refreshFromScreen() {
    auto shown = PTTrackList::read(accessibility);
    if (!shown) return;
    std::vector<PTSLTrack> tracks(shown->names.size());
    for (std::size_t i = 0; i < tracks.size(); ++i)
        tracks[i].name = std::move(shown->names[i]);
    jobs.runOnMain([this, candidates = std::vector<TrackAdoption::TrackList>{std::move(tracks)}] {
        adoption.adopt(candidates, "AX");
    });
}

void TrackMetadata::refreshComments() {
    assert(jobs.runtime.onMain());
    if (std::exchange(commentsReadWaits, true)) return;
    scripting.onQueue([this](PTSLClient&) { readComments(); });
}

void TrackMetadata::readComments() {
    const TrackComments::Wanted wanted = jobs.runtime.syncMain([this] {
        commentsReadWaits = false;
        return comments.wanted();
    });
    if (wanted.names.empty()) return;
    const auto read = PTMixComments::read(accessibility, wanted.names);
    if (!read) return;
    jobs.runOnMain([this, wanted, found = *read] { comments.adopt(wanted, found); });
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
