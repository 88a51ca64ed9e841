// The host's record as a history: which track was where, and what it had when.
#pragma once

#include "simulator/host_record.h"
#include "simulator/simulator_options.h"

#include <array>
#include <map>
#include <vector>

namespace lumbrine::simulation {

// The tracks that banks go over at that time, and where the bank begins among them.
const std::vector<int>& listAt(const HostRecord& record, TimePoint at);
int offsetAt(const HostRecord& record, TimePoint at);

class HostTimeline {
public:
    // The record outlives it.
    HostTimeline(const HostRecord& hostRecord, const SimulatorOptions& hostOptions);

    // What a display was shown last; null when it was shown nothing yet.
    const ShownTrack* shownOn(int strip, TimePoint at) const;

    const SimulatedTrack* trackAt(int id, TimePoint at) const; // null when there was none yet
    const std::vector<int>& listAt(TimePoint at) const { return simulation::listAt(record, at); }

    // The last time before that anything of it changed: a track, the order, the banks, a strip's track. A display that
    // shows the mode of its track for a while is no change.
    TimePoint lastChangeBefore(TimePoint at) const;
    TimePoint lastListBefore(TimePoint at) const;

    // Whether the track was so at any time between.
    template <typename Was>
    bool everWas(int id, TimePoint from, TimePoint until, Was was) const {
        const auto found = states.find(id);
        if (found == states.end()) return false;
        const std::vector<const TrackState*>& history = found->second;
        for (std::size_t i = 0; i < history.size() && history[i]->at <= until; ++i)
            if ((i + 1 == history.size() || history[i + 1]->at >= from) && was(history[i]->track)) return true;
        return false;
    }

    // As a surface is sent it.
    std::string displayOf(const SimulatedTrack& track) const; // its name
    int faderOf(const SimulatedTrack& track) const;
    static int ringOf(const SimulatedTrack& track, bool right); // 1-11
    static int modeOf(const SimulatedTrack& track);             // as clients are told it

private:
    const HostRecord& record;
    const SimulatorOptions& options;
    std::map<int, std::vector<const TrackState*>> states;
    std::array<std::vector<const ShownTrack*>, 16> displays;
    std::vector<TimePoint> changes;
};

} // namespace lumbrine::simulation
