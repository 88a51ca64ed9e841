// Learning the automation modes and pans of a range of the session. Pro Tools shows them only for tracks on the
// surfaces, so the range is walked bank by bank and every strip of it probed.
#pragma once

#include "model/bank/surface_walk.h"
#include "model/hands/automation_modes.h"

namespace lumbrine {

class VisibleRangeWalk {
public:
    struct Parts {
        SurfaceMoves& moves;
        SurfaceWalk& walk;
        AutomationModes& automation;
        ClientMirror& mirror;
    };

    VisibleRangeWalk(const Jobs& jobs, ReceiverState& state, ActivityLog& log, Parts parts);

    // Asks for a walk over `count` tracks, at least one, from session index `start`; what lies outside the session is
    // left out. Nothing happens while the transport runs. The newest range counts. Any thread.
    void refreshVisibleRange(int start, int count, Asked asked);

private:
    struct Range {
        int begin = 0;
        int end = 0; // one past the last track

        bool contains(int track) const { return begin <= track && track < end; }
    };

    // On the desk's thread
    void captureRange(Range range, const Asked& asked, BankLayout session);
    void captureTrack(Strip strip, int track, const Asked& asked);
    bool connected() const;

    // On the main thread
    void request(int start, int count, Asked asked);
    void store(Strip strip, std::size_t track, std::uint8_t mode);
    void report(Range range);

    const Jobs& jobs;
    ReceiverState& state;
    ActivityLog& log;
    const Parts parts;
};

} // namespace lumbrine
