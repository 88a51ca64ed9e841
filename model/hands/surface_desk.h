// The keys that change what the surfaces show: bank, channel, AUTO, mode and PAN. Surface A leads in the banks; Pro
// Tools moves both. Whose turn it is to press them, DeskQueue says.
#pragma once

#include "model/hands/surfaces.h"
#include "model/state/jobs.h"

#include <functional>

namespace lumbrine {

// The ports of the four bank and channel keys.
namespace bank_port {

inline constexpr int channelBack = 0;
inline constexpr int bankBack = 1;
inline constexpr int channelForward = 2;
inline constexpr int bankForward = 3;

} // namespace bank_port

class SurfaceDesk {
public:
    SurfaceDesk(const Jobs& jobs, Surfaces& surfaces);

    // ---- Keys that the caller holds down: each returns when the key is up again. Off the main thread.

    void pressBank(int port); // 30 ms

    // Holds the strip's AUTO key for 0.15 s, or with an action for 0.05 s, the action and 0.15 s. Pro Tools writes the
    // automation mode on the strip's display meanwhile. Once `goesOn`, which is called on this thread, says no, the key
    // comes up within `holdLook`, or does not go down.
    void holdAuto(Strip strip, const std::function<bool()>& goesOn, const std::function<void()>& whileHeld = {});
    static constexpr Duration holdLook = seconds(0.03);

    // A mode's button (0-5, surface/hui_engine.h) on the surface that shows the strip; 60 ms.
    void pressMode(Strip strip, int port);

    // Brings the V-Pots of a surface back to the left side of stereo pans; 0.18 s.
    void resetPanSide(SurfaceID surface);

    // Shows the other side of stereo pans; returns at once, and the key is up after 60 ms. Any thread.
    void flipPanSide(SurfaceID surface);

private:
    void wait(Duration time, const std::function<bool()>& goesOn);

    const Jobs& jobs;
    Surfaces& surfaces;
};

} // namespace lumbrine
