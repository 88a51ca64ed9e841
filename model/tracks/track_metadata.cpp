#include "model/tracks/track_metadata.h"

#include "model/state/display_name.h"
#include "screen/pt_mix_comments.h"
#include "screen/pt_track_list.h"

#include <algorithm>
#include <cassert>
#include <functional>
#include <utility>

namespace lumbrine {

namespace {

// Gives each track that value of its entry in the list; true when that changed any.
template <typename Value, typename ValueOf>
bool take(std::vector<Track>& tracks, const TrackMetadata::TrackList& list, Value Track::* member, ValueOf valueOf) {
    bool changed = false;
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        Value value = std::invoke(valueOf, list[i]);
        if (tracks[i].*member == value) continue;
        tracks[i].*member = std::move(value);
        changed = true;
    }
    return changed;
}

TrackIdentity identityOf(const PTSLTrack& track) {
    return {.id = track.id, .name = track.name, .index = track.index};
}

std::vector<TrackIdentity> identitiesOf(const TrackMetadata::TrackList& list) {
    std::vector<TrackIdentity> identities;
    std::ranges::transform(list, std::back_inserter(identities), identityOf);
    return identities;
}

} // namespace

TrackMetadata::TrackMetadata(const Jobs& jobs, ReceiverState& state, ActivityLog& log, Accessibility& accessibility,
                             ScriptingLink& scripting, ClientMirror& mirror)
    : jobs(jobs), state(state), log(log), accessibility(accessibility), scripting(scripting), mirror(mirror),
      screen(jobs, log), comments(state), namesRefreshInFlight(jobs.runtime) {}

// ---- The track list

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

void TrackMetadata::refreshRegularly() {
    assert(jobs.runtime.onMain());
    if (patience.mayAsk()) refreshFullNames();
}

void TrackMetadata::somethingHappened() {
    if (patience.mayAskAtOnce(jobs.runtime.now())) refreshFullNames();
}

void TrackMetadata::refresh(PTSLClient& ptsl) {
    const TimePoint asked = jobs.runtime.now();
    auto tracks = ptsl.trackList();
    if (!tracks) {
        jobs.runtime.syncMain([&] {
            if (noteFailure(tracks.error(), asked)) refreshFromScreen();
        });
        return;
    }
    jobs.runOnMain([this, tracks = *std::move(tracks)]() mutable { takeList(std::move(tracks)); });
}

// True when the names are to come from elsewhere.
bool TrackMetadata::noteFailure(const PTSLFailure& failure, TimePoint asked) {
    const TimePoint now = jobs.runtime.now();
    if (patience.failed(asked, now, !isNotRunning(failure)))
        jobs.onMainAfter(ServicePatience::grace - (now - asked), [this] {
            if (patience.isAway(jobs.runtime.now())) refreshFullNames();
        });
    const bool hasSaidNothing = !state.published.session.listed || !isFromService;
    if (!hasSaidNothing && !patience.isAway(now)) return false;
    scripting.notePTSLFailure(failure);
    return true;
}

void TrackMetadata::takeList(TrackList tracks) {
    patience.answered();
    newest = std::move(tracks);
    // The banks leave hidden tracks out as a rule, so the visible ones are tried first.
    std::vector<TrackList> candidates(2);
    std::ranges::copy_if(newest, std::back_inserter(candidates[0]),
                         [](const PTSLTrack& track) { return !track.isHidden; });
    candidates[1] = newest;
    adopt(candidates, "PTSL");
    scripting.notePTSLSuccess();
}

const PTSLTrack* TrackMetadata::listed(const TrackIdentity& track) const {
    const auto found =
        std::ranges::find_if(newest, [&](const PTSLTrack& candidate) { return isSame(track, identityOf(candidate)); });
    return found == newest.end() ? nullptr : &*found;
}

std::optional<std::string> TrackMetadata::currentName(const TrackIdentity& track) const {
    if (newest.empty()) return track.name;
    const PTSLTrack* const found = listed(track);
    return found == nullptr ? std::nullopt : std::optional(found->name);
}

void TrackMetadata::refreshFromScreen() {
    screen.wish(ScreenReading::Kind::names, [this]() -> std::optional<NoReading> {
        auto shown = PTTrackList::read(accessibility, jobs.runtime);
        if (!shown) return shown.error();
        TrackList tracks(shown->names.size());
        for (std::size_t i = 0; i < tracks.size(); ++i)
            tracks[i].name = std::move(shown->names[i]);
        jobs.runOnMain([this, candidates = std::vector<TrackList>{std::move(tracks)}] {
            if (patience.isFailing()) adopt(candidates, "AX"); // otherwise the service knows better by now
        });
        return std::nullopt;
    });
}

// ---- Adopting a list

void TrackMetadata::adopt(const std::vector<TrackList>& candidates, std::string_view source) {
    const std::size_t wanted = state.published.session.size();
    auto chosen = std::ranges::find(candidates, wanted, &TrackList::size);
    // As many hidden tracks as the displays show too many may be chance.
    if (chosen != candidates.begin() && chosen != candidates.end() && misfitsOf(*chosen) > 0) chosen = candidates.end();
    if (chosen != candidates.end()) showsHidden = chosen != candidates.begin();
    bankedTracks = identitiesOf(candidates[showsHidden && candidates.size() > 1 ? 1 : 0]);
    bankedIsFromService = source == "PTSL";
    if (wanted == 0) return;
    if (chosen == candidates.end()) return reportMismatch(candidates);
    if (hasOtherOrder(*chosen)) return; // adopted once the map has followed
    // The first list of a session is news even where it says what was assumed.
    const bool first = !std::exchange(state.published.session.listed, true);
    isFromService = bankedIsFromService;
    forgetDisplays(*chosen);
    adoptIdentities(*chosen);
    adoptNames(*chosen, source);
    adoptColors(*chosen, first);
    adoptInputMonitors(*chosen, first);
    adoptStates(*chosen);
}

// By ids, which tell a track that was moved from one that was given another name.
bool TrackMetadata::hasOtherOrder(const TrackList& list) const {
    const std::vector<Track>& tracks = state.published.session.tracks;
    const bool hasIDs = std::ranges::none_of(tracks, [](const Track& track) { return track.id.empty(); });
    return hasIDs && !std::ranges::equal(tracks, list, {}, &Track::id, &PTSLTrack::id) &&
           std::ranges::is_permutation(tracks, list, {}, &Track::id, &PTSLTrack::id);
}

void TrackMetadata::reportMismatch(const std::vector<TrackList>& candidates) const {
    std::string counts;
    for (const TrackList& candidate : candidates)
        counts += (counts.empty() ? "" : ", ") + std::to_string(candidate.size());
    counts += " / HUI " + std::to_string(state.published.session.size());
    log.sayOnceAMinute("Full names: count mismatch (" + counts + ") → keeping 4-char names",
                       "フルネーム: 件数不一致（" + counts + "）→ 4文字表示のまま");
}

// Of tracks that were given another name, perhaps before the first list. Where most displays differ from the names, the
// host shortens names in a way of its own.
void TrackMetadata::forgetDisplays(const TrackList& list) {
    std::vector<Track>& tracks = state.published.session.tracks;
    const bool namesTell = 2 * misfitsOf(list) <= tracks.size();
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        const bool isRenamed = !tracks[i].id.empty() && tracks[i].id == list[i].id && tracks[i].name != list[i].name;
        if (isRenamed || (namesTell && !mayShow(tracks[i].display, list[i].name))) tracks[i].displayKnown = false;
    }
}

// How many tracks have a display that their name in the list cannot have.
std::size_t TrackMetadata::misfitsOf(const TrackList& list) const {
    std::size_t misfits = 0;
    for (std::size_t i = 0; i < list.size(); ++i) {
        const Track& track = state.published.session.tracks[i];
        misfits += track.displayKnown && !mayShow(track.display, list[i].name) ? 1 : 0;
    }
    return misfits;
}

// A list from the screen has no ids. A track that keeps its name is taken for the same one. Where another track is now,
// what the surfaces showed was the former one's, and so was the comment beside its name.
void TrackMetadata::adoptIdentities(const TrackList& list) {
    std::vector<Track>& tracks = state.published.session.tracks;
    bool hasNamesake = false;
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        if (list[i].id.empty() && list[i].index == 0 && tracks[i].name == list[i].name) continue;
        const TrackIdentity now{.id = list[i].id, .name = list[i].name, .index = list[i].index};
        if (tracks[i].name && !isSame(tracks[i].identity(), now)) {
            tracks[i].forgetShown();
            hasNamesake = hasNamesake || tracks[i].name == list[i].name;
        }
        tracks[i].id = list[i].id;
        tracks[i].listIndex = list[i].index;
    }
    if (!hasNamesake) return;
    comments.followNames();
    refreshComments();
}

void TrackMetadata::adoptNames(const TrackList& list, std::string_view source) {
    if (!take(state.published.session.tracks, list, &Track::name, &PTSLTrack::name)) return;
    state.published.changed();
    state.fullTableDirty = true;
    mirror.sendVisibleFullNames();
    const std::string count = std::to_string(list.size());
    const std::string from(source);
    log.say("✓ Got " + count + " track names (full names via " + from + ")",
            "✓ トラック名を " + count + " 件取得（フルネーム表示・" + from + "）");
    comments.followNames();
    refreshComments();
}

void TrackMetadata::adoptColors(const TrackList& list, bool first) {
    if (!take(state.published.session.tracks, list, &Track::color, &PTSLTrack::color) && !first) return;
    state.published.changed();
    state.fullTableDirty = true;
    mirror.sendVisibleColors();
}

void TrackMetadata::adoptInputMonitors(const TrackList& list, bool first) {
    if (!take(state.published.session.tracks, list, &Track::inputMonitor, &PTSLTrack::isInputMonitoringOn) && !first)
        return;
    state.published.changed();
    state.fullTableDirty = true;
    mirror.sendVisibleInputMons();
}

void TrackMetadata::adoptStates(const TrackList& list) {
    std::vector<Track>& tracks = state.published.session.tracks;
    const bool mutes = take(tracks, list, &Track::mute, &PTSLTrack::isMuted);
    const bool solos = take(tracks, list, &Track::solo, &PTSLTrack::isSoloed);
    const bool records = take(tracks, list, &Track::record, &PTSLTrack::isRecordEnabled);
    if (mutes || solos || records) state.fullTableDirty = true;
}

// ---- Comments

void TrackMetadata::refreshComments() {
    screen.wish(ScreenReading::Kind::comments, [this]() -> std::optional<NoReading> {
        const TrackComments::Wanted wanted = jobs.runtime.syncMain([this] { return comments.wanted(); });
        auto read = PTMixComments::read(accessibility, jobs.runtime, wanted.names);
        if (!read) return read.error();
        jobs.runOnMain([this, wanted, found = *std::move(read)] { comments.adopt(wanted, found); });
        return std::nullopt;
    });
}

} // namespace lumbrine
