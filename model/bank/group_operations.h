// Faders and automation modes of many tracks at once, shown or not. They need each track on the surfaces, so the banks
// are walked. Members are session indices; those outside the session are left out, and nothing happens when none is
// left.
#pragma once

#include "model/bank/surface_walk.h"
#include "model/hands/automation_modes.h"

#include <utility>
#include <vector>

namespace lumbrine {

class GroupOperations {
public:
    // Member and fader value, 0.0-1.0 nominally.
    using FaderEntry = std::pair<int, double>;

    struct Parts {
        Surfaces& surfaces;
        SurfaceMoves& moves;
        SurfaceWalk& walk;
        AutomationModes& automation;
        ClientMirror& mirror;
    };

    GroupOperations(const Jobs& jobs, ReceiverState& state, ActivityLog& log, Parts parts);

    // All of them: any thread; return at once.

    void groupSetFaders(std::vector<FaderEntry> entries);

    // `huiPort`: the mode's button, 0-5; others do nothing. Nor does anything happen while the transport runs.
    void groupSetAutoMode(std::vector<int> members, int huiPort);

private:
    // On the automation queue
    void setFaders(std::vector<FaderEntry> entries);
    void setAutoMode(std::vector<int> members, int huiPort);
    void moveFader(Strip strip, double value);
    void pressMode(Strip strip, int huiPort, int member);
    std::optional<Strip> bringOntoSurfaces(int member, BankLayout session);
    std::optional<Strip> stripShowing(int member, BankLayout session) const;

    // On the main thread
    void storeMode(Strip strip, int member, std::uint8_t mode);
    void reportFaders(std::size_t count);
    void reportModes(std::size_t count);

    const Jobs& jobs;
    ReceiverState& state;
    ActivityLog& log;
    const Parts parts;
};

} // namespace lumbrine
