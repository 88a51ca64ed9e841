#include "model/tracks/track_adoption.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace lumbrine {

namespace {

// One value of each track.
template <typename Value, typename Member>
std::vector<Value> column(const TrackAdoption::TrackList& tracks, Member member) {
    std::vector<Value> values;
    values.reserve(tracks.size());
    for (const PTSLTrack& track : tracks)
        values.push_back(std::invoke(member, track));
    return values;
}

// True when that changed anything.
template <typename Values>
bool store(Values& known, Values values) {
    if (known == values) return false;
    known = std::move(values);
    return true;
}

} // namespace

TrackAdoption::TrackAdoption(ReceiverState& receiverState, ClientMirror& clientMirror, ActivityLog& activityLog,
                             Bilingual bilingual)
    : state(receiverState), mirror(clientMirror), log(activityLog), text(bilingual) {}

void TrackAdoption::adopt(const std::vector<TrackList>& candidates, std::string_view source) {
    const std::size_t wanted = state.published.trackMap.size();
    if (wanted == 0) return;
    const auto chosen = std::ranges::find(candidates, wanted, &TrackList::size);
    if (chosen == candidates.end()) {
        reportMismatch(candidates);
        return;
    }
    adoptNames(*chosen, source);
    adoptColors(*chosen);
    adoptInputMonitors(*chosen);
    adoptStates(*chosen);
}

void TrackAdoption::reportMismatch(const std::vector<TrackList>& candidates) const {
    std::string counts;
    for (const TrackList& candidate : candidates)
        counts += (counts.empty() ? "" : ", ") + std::to_string(candidate.size());
    counts += " / HUI " + std::to_string(state.published.trackMap.size());
    log.appendLog(text("Full names: count mismatch (" + counts + ") → keeping 4-char names",
                       "フルネーム: 件数不一致（" + counts + "）→ 4文字表示のまま"));
}

void TrackAdoption::adoptNames(const TrackList& tracks, std::string_view source) {
    if (!store(state.published.trackMapFull, column<std::string>(tracks, &PTSLTrack::name))) return;
    state.published.changed();
    state.session.fullTableDirty = true;
    mirror.sendVisibleFullNames();
    const std::string count = std::to_string(tracks.size());
    const std::string from(source);
    log.appendLog(text("✓ Got " + count + " track names (full names via " + from + ")",
                       "✓ トラック名を " + count + " 件取得（フルネーム表示・" + from + "）"));
    if (onNewNames) onNewNames();
}

void TrackAdoption::adoptColors(const TrackList& tracks) {
    if (!store(state.published.trackMapColors, column<std::optional<RGBColor>>(tracks, &PTSLTrack::color))) return;
    state.published.changed();
    state.session.fullTableDirty = true;
    mirror.sendVisibleColors();
}

void TrackAdoption::adoptInputMonitors(const TrackList& tracks) {
    if (!store(state.published.trackMapInputMon, column<bool>(tracks, &PTSLTrack::isInputMonitoringOn))) return;
    state.published.changed();
    state.session.fullTableDirty = true;
    mirror.sendVisibleInputMons();
}

void TrackAdoption::adoptStates(const TrackList& tracks) {
    SessionTable& session = state.session;
    const bool mutes = store(session.sessMutes, column<bool>(tracks, &PTSLTrack::isMuted));
    const bool solos = store(session.sessSolos, column<bool>(tracks, &PTSLTrack::isSoloed));
    const bool recs = store(session.sessRecs, column<bool>(tracks, &PTSLTrack::isRecordEnabled));
    if (mutes || solos || recs) session.fullTableDirty = true;
}

} // namespace lumbrine
