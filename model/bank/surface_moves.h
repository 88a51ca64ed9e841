// Moving the surfaces over the session by presses, and knowing when they have settled. Pro Tools confirms nothing: all
// there is to see are the display texts that it sends some time after a press.
//
// Every routine blocks and is for background threads; what it needs of the state it reads in hops to the main thread.
// Two jobs that move the surfaces at once would spoil each other's work; the flags behind ReceiverState::quiet keep
// them apart.
#pragma once

#include "model/bank/bank_map.h"
#include "model/bank/bank_step.h"
#include "model/bank/name_clock.h"
#include "model/hands/surfaces.h"

namespace lumbrine {

class SurfaceMoves {
public:
    static constexpr int maxPresses = 200;        // of one moveWindow
    static constexpr int maxAttempts = 4;         // of one moveWindowReliably
    static constexpr int stableWindowSamples = 6; // 0.12 s apart

    SurfaceMoves(Runtime& rt, const ReceiverState& receiverState, const BankMap& map, NameClock& clock,
                 Surfaces& hostSurfaces);

    // ---- Looking

    // Zero tracks while the runtime is being shut down.
    BankLayout layout() const;

    TrackNames snapshotWindow() const;

    // The window, once two looks at it in a row have been alike; after 0.12 s at the earliest and 0.72 s at the latest.
    TrackNames stableWindow() const;

    // Where the shown names are in the track map; -1 when that cannot be told.
    int shownOffset() const;

    // Returns once no display text has come for 0.08 s: after 0.12 s at the earliest, and always within half a second.
    void shortQuietWait();

    // Returns once no display text has come for longer than `still`, and after `limit` in any case.
    void waitForStillNames(Duration still, Duration limit);

    // ---- Moving

    // A press of 0.03 s. Surface A leads; Pro Tools moves both.
    void press(int port);

    // Presses its way to the target, or as near as the session's end allows, without looking at the displays in
    // between. Does nothing when it cannot be told where the surfaces are.
    void moveWindow(int target);

    // The same, looked at afterwards and tried anew when the surfaces are elsewhere.
    void moveWindowReliably(int target);

private:
    Runtime& runtime;
    const ReceiverState& state;
    const BankMap& bankMap;
    NameClock& nameClock;
    Surfaces& surfaces;
};

} // namespace lumbrine
