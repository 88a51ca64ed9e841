#include "simulator/host_record.h"

#include <utility>

namespace lumbrine {

namespace {

std::string withoutBlanksAround(const std::string& text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

} // namespace

HostRecorder::HostRecorder(const Runtime& runtime, const SimulatedSession& session)
    : runtime(runtime), session(session) {
    noteList();
    for (const SimulatedTrack& track : session.tracks())
        noteState(track);
}

void HostRecorder::act(HostAct::Kind kind, int strip, int detail, int track) {
    record.acts.push_back({sent, runtime.now(), kind, strip, detail, track});
}

void HostRecorder::wish(std::int32_t command, bool enabled, int track) {
    record.wishes.push_back({runtime.now(), command, enabled, track});
}

void HostRecorder::bank(int offset, const TracksOnStrips& tracks) {
    const bool pressed = std::exchange(bankIsPressed, false);
    if (tracks == tracksNow) return;
    tracksNow = tracks;
    record.banks.push_back({runtime.now(), offset, pressed ? std::optional(sent) : std::nullopt});
}

void HostRecorder::show(int strip, int track, std::string text) {
    ShownTrack& last = shownNow[static_cast<std::size_t>(strip)];
    text = withoutBlanksAround(text);
    if (last.track == track && last.text == text) return;
    last = {runtime.now(), strip, track, std::move(text)};
    record.shown.push_back(last);
}

void HostRecorder::change(const SessionChange& change) {
    switch (change.kind) {
    case SessionChange::Kind::structure:
    case SessionChange::Kind::opened:
    case SessionChange::Kind::closed:
        // A change of structure may include names, and it does not say of which track.
        for (const SimulatedTrack& track : session.tracks())
            noteState(track);
        noteList();
        break;
    case SessionChange::Kind::values:
    case SessionChange::Kind::automation:
        if (const SimulatedTrack* track = session.find(change.trackID)) noteState(*track);
        break;
    case SessionChange::Kind::transport:
        break;
    }
}

void HostRecorder::noteList() {
    record.lists.push_back({runtime.now(), session.shownTracks()});
}

void HostRecorder::noteState(const SimulatedTrack& track) {
    const auto [last, isNew] = statesNow.try_emplace(track.id, track);
    if (!isNew && last->second == track) return;
    last->second = track;
    record.states.push_back({runtime.now(), track});
}

} // namespace lumbrine
