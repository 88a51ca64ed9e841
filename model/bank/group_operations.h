// Faders and automation modes of many tracks at once, shown or not. They need each track on the surfaces, so the banks
// are walked. Members are session indices; those outside the session are left out, and nothing happens when none is
// left. Of wishes that wait, the newest for each member counts.
#pragma once

#include "model/bank/surface_walk.h"
#include "model/hands/automation_modes.h"

#include <cstddef>
#include <map>
#include <string>
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
        FaderCapture& capture;
        AutomationModes& automation;
        ClientMirror& mirror;
    };

    GroupOperations(const Jobs& jobs, ReceiverState& state, ActivityLog& log, Parts parts);

    // All of them: any thread; return at once.

    void groupSetFaders(std::vector<FaderEntry> entries, Asked asked);

    // `huiPort`: the mode's button, 0-5; others do nothing. Nor does anything happen while the transport runs.
    void groupSetAutoMode(std::vector<int> members, int huiPort, Asked asked);

private:
    // By member, so in the order of the session: the banks move one way.
    using Faders = std::map<int, double>;
    using Modes = std::map<int, int>; // ports

    struct Reached {
        std::size_t members = 0;
        std::size_t of = 0;

        std::string inEnglish() const;
        std::string inJapanese() const;
    };

    // On the desk's thread
    bool moveFader(int member, double value, const Asked& asked, BankLayout session);
    bool pressMode(int member, int huiPort, const Asked& asked, BankLayout session);
    std::optional<Strip> bringOntoSurfaces(int member, BankLayout session);
    std::optional<Strip> stripShowing(int member, BankLayout session) const;

    // On the main thread
    void requestFaders(const std::vector<FaderEntry>& entries, Asked asked);
    void requestModes(const std::vector<int>& members, int huiPort, Asked asked);
    bool isInSession(int member) const;
    void storeMode(Strip strip, int member, std::uint8_t mode);
    void reportFaders(Reached reached);
    void reportModes(Reached reached);

    const Jobs& jobs;
    ReceiverState& state;
    ActivityLog& log;
    const Parts parts;
    Faders faders; // that wait, like the next; main thread
    Modes modes;
};

} // namespace lumbrine
