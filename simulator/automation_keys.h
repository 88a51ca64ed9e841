// The AUTO switches of the strips and the automation mode keys: a mode is chosen when one of each is down, or by a mode
// key alone together with the OPTION key.
#pragma once

#include "simulator/short_name.h"
#include "simulator/simulated_session.h"

#include <functional>
#include <set>
#include <utility>

namespace lumbrine {

// How a display shows a track's automation mode.
DisplayText automationText(const SimulatedTrack& track, TrimWords trimWords);

class AutomationKeys {
public:
    struct Strip {
        int surface;
        int number;
        auto operator<=>(const Strip&) const = default;
    };

    // Which tracks a mode is for.
    enum class Scope {
        strips,    // those whose AUTO switches are down, and with them their groups
        noGroups,  // those alone: the CLUTCH key is down
        allTracks, // the OPTION key is down
        selected,  // OPTION and SHIFT are
    };

    // `trackOn` says which track a strip shows at the moment, 0 for none. Both outlive this.
    AutomationKeys(SimulatedSession& editedSession, std::function<int(Strip)> trackOn)
        : session(editedSession), trackShownOn(std::move(trackOn)) {}

    // Either order of pressing sets the mode. The trim key turns trim over instead.
    void autoSwitch(Strip strip, bool down, Scope scope);
    void modeKey(int surface, int port, bool down, Scope scope); // port of zone 18, 0-5

    // Called for each held strip when a mode key is down with it, before its track is given the mode.
    std::function<void(int modePort, Strip strip)> onSet;

    bool isHeld(Strip strip) const { return heldStrips.contains(strip); }

    void releaseAll(int surface);
    void releaseModes(); // on all surfaces

private:
    void apply(int modePort, const std::set<Strip>& strips, Scope scope);
    bool isMeant(const SimulatedTrack& track, const std::set<Strip>& strips, Scope scope) const;

    SimulatedSession& session;
    const std::function<int(Strip)> trackShownOn;
    std::set<Strip> heldStrips;
    std::set<std::pair<int, int>> heldModes; // surface and port
};

} // namespace lumbrine
