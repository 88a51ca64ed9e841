// The AUTO switches of the strips and the automation mode keys. A mode is set when a switch and a mode key are down
// together, or when a mode key is pressed with the OPTION key.
#pragma once

#include "simulator/short_name.h"
#include "simulator/simulated_session.h"

#include <functional>
#include <set>
#include <utility>

namespace lumbrine {

// The text of a strip's display for a track's automation mode.
DisplayText automationText(const SimulatedTrack& track, TrimWords trimWords);

class AutomationKeys {
public:
    struct Strip {
        int surface;
        int number;
        auto operator<=>(const Strip&) const = default;
    };

    // The tracks that get a mode.
    enum class Scope {
        strips,    // those whose AUTO switches are down, and the members of their groups
        noGroups,  // the same without groups: the CLUTCH key is down
        allTracks, // the OPTION key is down
        selected,  // OPTION and SHIFT are down
    };

    // `trackShownOn` returns the id of the track on a strip, 0 for none. Both arguments must outlive this object.
    AutomationKeys(SimulatedSession& session, std::function<int(Strip)> trackShownOn)
        : session(session), trackShownOn(std::move(trackShownOn)) {}

    // The order of the two presses does not matter. The trim key toggles trim instead of setting a mode.
    void autoSwitch(Strip strip, bool down, Scope scope);
    void modeKey(int surface, int port, bool down, Scope scope); // port of zone 18, 0-5

    // Called for each held strip before its track gets the mode.
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
