// Everything about one simulated session that its seed decides.
#pragma once

#include "platform/virtual/virtual_network.h"
#include "simulator/seeded_random.h"
#include "simulator/simulator_options.h"
#include "tests/simulation/hardships.h"
#include "tests/simulation/not_yet.h"
#include "tests/simulation/source_truth.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine::simulation {

// What somebody at a phone may do next.
enum class Act {
    playFader,
    pressSwitch,
    turnPot,
    changePanSide,
    seekPan,
    moveBank,
    seekBank,
    stormOfSeeks,
    scan,
    setGroupFaders,
    setGroupMode,
    captureRange,
    setMode,
    takeOver,
    walkOut,
    setGroupSwitches,
    toggleInputMonitor,
};
inline constexpr std::size_t actCount = 17;

// What may go wrong around the receiver while the phones act.
struct Troubles {
    bool surfacesVanish = false;      // and come back, each by itself
    bool bothSurfacesFlap = false;    // away and back at once, for about as long as makes them count as gone
    bool secondSurfaceLeaves = false; // for seconds
    bool hostSticks = false;          // does nothing for a while, then all at once
    bool portsAreReleased = false;
    bool userActs = false; // banks, scrolls and moves faders at the host
    bool transport = false;
    bool serviceFails = false; // the scripting service dies and comes back, or stalls
    bool screenFails = false;  // reads of the screen fail, and elements vanish
    bool permissionGoes = false;
    bool commentsChange = false;
};

struct Scenario {
    std::uint64_t seed = 1;
    Switches switches;
    std::uint64_t patience = 1; // of the threads, see VirtualRuntime::Options
    VirtualRuntime::Options::Turns turns = VirtualRuntime::Options::Turns::drawn;
    int phones = 1; // 1-3
    int tracks = 16;
    bool namesDiffer = false; // in every display; else they are as in real sessions
    Sources sources;
    SimulatorOptions host;
    VirtualNetwork::Faults network;
    bool metersArrive = false;          // at the phones; they are most of the traffic
    bool forger = false;                // somebody on the network sends what is not its to send
    bool storms = false;                // phones ask for more than can be done
    std::array<int, actCount> habits{}; // how often phones do what, as weights
    Troubles troubles;
    Hardships hardships;
    std::vector<std::string_view> hostHabits; // by their names, see host_habits.h
    Duration trouble = seconds(30);

    // Whether the host reacts before the receiver takes it for unmoved.
    bool hostIsQuick() const { return host.latency <= seconds(0.2); }

    bool has(std::string_view hostHabit) const;

    int strips() const { return 8 * host.surfaces; }
    int weight(Act act) const { return habits[static_cast<std::size_t>(act)]; }

    std::string text() const; // one line
};

// Chance for what is drawn under a name of its own: to switch that on or off changes nothing else that a seed decides.
SeededRandom chanceOf(std::uint64_t seed, std::string_view name);

Scenario scenarioOf(std::uint64_t seed, const Switches& switches = {});

} // namespace lumbrine::simulation
