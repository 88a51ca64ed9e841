#include "tests/simulation/host_timeline.h"

#include "simulator/short_name.h"
#include "tests/simulation/host_truth.h"

#include <algorithm>
#include <cmath>

namespace lumbrine::simulation {

namespace {

template <typename Entry>
TimePoint timeOf(const Entry* entry) {
    return entry->at;
}

// The last that began at that time or before; the end when there is none.
template <typename Entries, typename Time>
auto lastUntil(const Entries& entries, TimePoint at, Time time) {
    const auto next = std::ranges::upper_bound(entries, at, {}, time);
    return next == entries.begin() ? entries.end() : std::prev(next);
}

TimePoint lastBefore(const std::vector<TimePoint>& times, TimePoint at) {
    const auto next = std::ranges::upper_bound(times, at);
    return next == times.begin() ? distantPast : *std::prev(next);
}

} // namespace

const std::vector<int>& listAt(const HostRecord& record, TimePoint at) {
    static const std::vector<int> none;
    const auto last = lastUntil(record.lists, at, &TrackList::at);
    return last == record.lists.end() ? none : last->ids;
}

int offsetAt(const HostRecord& record, TimePoint at) {
    const auto last = lastUntil(record.banks, at, &BankChange::at);
    return last == record.banks.end() ? 0 : last->offset;
}

HostTimeline::HostTimeline(const HostRecord& hostRecord, const SimulatorOptions& hostOptions)
    : record(hostRecord), options(hostOptions) {
    const auto noteTimes = [this](const auto& entries) {
        for (const auto& entry : entries)
            changes.push_back(entry.at);
    };
    noteTimes(record.states);
    noteTimes(record.lists);
    noteTimes(record.banks);
    for (const TrackState& state : record.states)
        states[state.track.id].push_back(&state);
    for (const ShownTrack& shown : record.shown) {
        auto& before = displays[static_cast<std::size_t>(shown.strip)];
        if (before.empty() || before.back()->track != shown.track) changes.push_back(shown.at);
        before.push_back(&shown);
    }
    std::ranges::sort(changes);
}

const ShownTrack* HostTimeline::shownOn(int strip, TimePoint at) const {
    const auto& shown = displays[static_cast<std::size_t>(strip)];
    const auto last = lastUntil(shown, at, timeOf<ShownTrack>);
    return last == shown.end() ? nullptr : *last;
}

const SimulatedTrack* HostTimeline::trackAt(int id, TimePoint at) const {
    const auto found = states.find(id);
    if (found == states.end()) return nullptr;
    const auto last = lastUntil(found->second, at, timeOf<TrackState>);
    return last == found->second.end() ? nullptr : &(*last)->track;
}

TimePoint HostTimeline::lastChangeBefore(TimePoint at) const {
    return lastBefore(changes, at);
}

TimePoint HostTimeline::lastListBefore(TimePoint at) const {
    const auto last = lastUntil(record.lists, at, &TrackList::at);
    return last == record.lists.end() ? distantPast : last->at;
}

std::string HostTimeline::displayOf(const SimulatedTrack& track) const {
    const DisplayText text = shortName(track.name, options.shortNames, options.nonASCII);
    return trimmed({text.begin(), text.end()});
}

int HostTimeline::faderOf(const SimulatedTrack& track) const {
    const int unit = 1 << (14 - options.faderBits);
    return track.fader.raw() / unit * unit;
}

int HostTimeline::ringOf(const SimulatedTrack& track, bool right) {
    const double pan = right && track.stereo ? track.panRight : track.panLeft;
    return 6 + static_cast<int>(std::lround(pan / 20));
}

int HostTimeline::modeOf(const SimulatedTrack& track) {
    constexpr int trimmed = 8;
    const int mode = 1 + static_cast<int>(track.automation);
    const bool off = track.automation == SimulatedTrack::Automation::off;
    return track.trim && !off ? mode + trimmed : mode;
}

} // namespace lumbrine::simulation
