// Taking the surfaces across the session to act on tracks that they do not show, and giving them back. Meanwhile no
// scan and no seek begins, and the client is not shown what passes by.
//
// A walk waits for its turn at the surfaces until they are free and no finger is on a fader, at most `patience` after
// it was asked for the last time. Of walks of one kind one waits.
#pragma once

#include "model/bank/surface_moves.h"
#include "model/bank/track_capture.h"
#include "model/hands/desk_queue.h"

#include <functional>
#include <optional>

namespace lumbrine {

class SurfaceWalk {
public:
    struct Start {
        BankLayout session;
        int offset = -1; // of the user's view, -1 when it is unknown
    };

    enum class Purpose { range, faders, modes };

    static constexpr Duration patience = seconds(10.0);

    struct Plan {
        Purpose purpose;
        CommandName name;
        Asked asked;
        bool whileTransportRuns = false;
        std::function<bool(const Start&)> wanted; // main thread; false when there is nothing to do
        std::function<void(const Start&)> steps;  // on the desk's thread: what is done on the way
        std::function<void()> report;             // main thread, after the client has been sent what the surfaces
                                                  // show, unless somebody else has taken control
        std::function<void()> dropped = [] {};    // main thread, in place of the other three
    };

    struct Parts {
        DeskQueue& queue;
        SurfaceMoves& moves;
        BankMap& bankMap;
        TrackCapture& capture;
        ClientMirror& mirror;
        DroppedCommands& drops;
    };

    SurfaceWalk(const Jobs& jobs, ReceiverState& state, Parts parts);

    // Begins if Pro Tools is there and the session has tracks by then, which is logged otherwise, and returns to the
    // user's view in the end, if it was known. Main thread.
    void request(Plan plan);

    // Whether to take another step: nobody else has taken control. Any thread.
    bool goesOn(const Asked& asked) const { return parts.queue.isWanted(asked.owner); }

private:
    Start start() const;
    std::optional<DropReason> obstacle(const Plan& plan) const;
    void end(const Plan& plan);

    const Jobs& jobs;
    ReceiverState& state;
    const Parts parts;
};

} // namespace lumbrine
