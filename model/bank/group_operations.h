// Faders and automation modes of many tracks at once, shown or not. They need each track on the surfaces, so the banks
// are walked. Members are rows of the client's table and mean the tracks that it was told of there (TrackTable::meant),
// wherever these are by the time of the walk. Those outside the session are left out, and nothing happens when none is
// left. Of wishes that wait, the newest for each track counts.
#pragma once

#include "model/bank/surface_walk.h"
#include "model/hands/automation_modes.h"
#include "model/mirror/track_table.h"

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
        TrackCapture& capture;
        AutomationModes& automation;
        ClientMirror& mirror;
        const TrackTable& table;
        DroppedCommands& drops;
    };

    GroupOperations(const Jobs& jobs, ReceiverState& state, ActivityLog& log, Parts parts);

    // All of them: any thread; return at once.

    void groupSetFaders(std::vector<FaderEntry> entries, Asked asked);

    // `huiPort`: the mode's button, 0-5; others do nothing. Nor does anything happen while the transport runs.
    void groupSetAutoMode(std::vector<int> members, int huiPort, Asked asked);

private:
    // By the tracks' places, so in the order of the session: the banks move one way.
    template <typename Value>
    struct Wish {
        TrackRef track;
        Value value;
    };
    template <typename Value>
    using Wishes = std::map<std::size_t, Wish<Value>>;
    using Faders = Wishes<double>;
    using Modes = Wishes<int>; // ports

    struct Reached {
        std::size_t members = 0;
        std::size_t of = 0;

        std::string inEnglish() const;
        std::string inJapanese() const;
    };

    // On the desk's thread
    bool moveFader(const Wish<double>& wish, const Asked& asked, BankLayout session);
    bool pressMode(const Wish<int>& wish, const Asked& asked, BankLayout session);
    std::optional<Strip> bringOntoSurfaces(const TrackRef& track, BankLayout session);
    std::optional<Strip> stripShowing(const TrackRef& track, BankLayout session) const;

    // On the main thread
    void requestFaders(const std::vector<FaderEntry>& entries, Asked asked);
    void requestModes(const std::vector<int>& members, int huiPort, Asked asked);
    template <typename Value>
    bool add(Wishes<Value>& wishes, CommandName name, const std::vector<std::pair<int, Value>>& entries,
             const Asked& asked);
    template <typename Value>
    Wishes<Value> take(Wishes<Value>& wishes, CommandName name, Reached& reached);
    void storeMode(Strip strip, const TrackRef& track, std::uint8_t mode);
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
