// Taking the surfaces across the session to act on tracks that they do not show, and giving them back. Meanwhile no
// scan and no seek begins, and the client is not shown what passes by.
//
// Walks run on the automation queue, so there is one at a time.
#pragma once

#include "model/bank/surface_moves.h"

#include <functional>
#include <optional>

namespace lumbrine {

class SurfaceWalk {
public:
    struct Start {
        bool transportRunning = false;
        BankLayout session;
        int offset = -1; // of the user's view, -1 when it is unknown
    };

    SurfaceWalk(const Jobs& jobs, ReceiverState& state, SurfaceDesk& desk, SurfaceMoves& moves, BankMap& bankMap,
                ClientMirror& mirror);

    // Takes the surfaces if Pro Tools is there, the session has tracks, nobody else moves the banks, and `wanted`,
    // which is called on the main thread, agrees. The caller that gets a start calls `end`. On the automation queue.
    std::optional<Start> begin(const std::function<bool(const Start&)>& wanted);

    // Moves back to the user's view, if it was known, and gives the surfaces back: the client is sent what they show,
    // then `rest` is called on the main thread. On the automation queue.
    void end(const Start& start, std::function<void()> rest);

private:
    std::optional<Start> take(const std::function<bool(const Start&)>& wanted);

    const Jobs& jobs;
    ReceiverState& state;
    SurfaceDesk& desk;
    SurfaceMoves& moves;
    BankMap& bankMap;
    ClientMirror& mirror;
};

} // namespace lumbrine
