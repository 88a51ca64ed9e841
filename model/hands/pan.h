// Pans: which side of stereo pans the V-Pots show, as far as the receiver knows, and moving a pan to a ring position by
// turning the V-Pot until Pro Tools shows that position. Main thread only, but for what says otherwise.
#pragma once

#include "model/hands/desk_queue.h"
#include "model/hands/surface_desk.h"
#include "model/mirror/client_mirror.h"

#include <map>

namespace lumbrine {

class Pan {
public:
    static constexpr int maxSteps = 41;
    static constexpr Duration stepInterval = seconds(0.035);
    static constexpr Duration longestSeek = seconds(2.0); // what has not arrived by then is given up
    static constexpr Duration sideFollows = seconds(0.5); // in which Pro Tools has sent the rings of another side

    Pan(const Jobs& jobs, ReceiverState& state, ActivityLog& log, Surfaces& surfaces, SurfaceDesk& desk,
        DeskQueue& queue, ClientMirror& mirror);

    // Records and reports a side; presses nothing. Nothing happens when it is the side already.
    void setPanMode(bool right);

    // Shows the other side, as the client asked. A surface whose side is just being set gets the newest one then. Main
    // thread, like the above.
    void toggleSide();

    // Pro Tools does not say which side its V-Pots show: brings those of the surface to the left first and then to the
    // side that is told. 0.18 s; off the main thread.
    void followSide(SurfaceID surface) { setSide(surface, Side::told); }

    // The same, to the left, which is told; unless the client has asked for the other side meanwhile.
    void resetSide(SurfaceID surface) { setSide(surface, Side::left); }

    // To be called from time to time: rings that Pro Tools did not send again after a change of side are the same on
    // both.
    void believeRings();

    // Begins a seek to ring position 1-11, in place of the strip's current one; while the banks are moved, later. Any
    // other target, and any strip but 0-15, does nothing.
    void seek(int strip, int target, Asked asked);

    // Takes one step now and the next 35 ms later, until the target is reached, taken away or given up.
    void panSeekStep(Strip strip);

private:
    enum class Side { told, left };

    void setSide(SurfaceID surface, Side side);
    void begin(Strip strip, int target);

    const Jobs& jobs;
    ReceiverState& state;
    ActivityLog& log;
    Surfaces& surfaces;
    SurfaceDesk& desk;
    DeskQueue& queue;
    ClientMirror& mirror;
    unsigned seeksBegun = 0;
    TimePoint sideSince = distantPast;
    std::map<SurfaceID, bool> beingSet; // true: the client has asked for the other side meanwhile
};

} // namespace lumbrine
