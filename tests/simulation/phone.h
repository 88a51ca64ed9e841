// Somebody at a phone: plays faders, presses and turns, moves the banks and has them moved, forgets to let go, walks
// out of the network and back, into another one, takes over.
#pragma once

#include "platform/virtual/virtual_network.h"
#include "remote/command_builder.h"
#include "remote/remote_client.h"
#include "simulator/seeded_random.h"
#include "tests/simulation/scenario.h"

#include <memory>
#include <string>

namespace lumbrine::simulation {

inline constexpr const char* receiverAddress = "192.168.1.2";
inline constexpr std::uint16_t receiverPort = 52700;

// Main thread.
class Phone {
public:
    // The most that one walk is asked to do.
    static constexpr std::uint64_t mostMembers = 6;
    static constexpr std::uint64_t mostRangeTracks = 24;

    Phone(VirtualRuntime& rt, VirtualNetwork& virtualNetwork, const Scenario& decided, int phoneNumber);

    void act();  // does something now, and again later, until `rest`
    void rest(); // lets go of everything

    // In some sessions: takes hold of faders and presses keys, and lets go of nothing. How long that takes.
    Duration actLast();

    remote::RemoteClient& client() { return *remote; }
    const std::string& address() const { return *ownAddress; }

private:
    Act nextAct();
    void doIt(Act act);
    bool mayAskFor(TimePoint& next, Duration pause);
    void touch(Strip strip);
    void release(Strip strip);
    void gesture(Strip strip, int movesLeft);
    void press(Strip strip);
    void storm(int seeksLeft);
    void scan();
    void walk(Act act);
    void setMode(Strip strip);
    void walkOut(Duration absence);
    void wishOfService(Act act, Strip strip);
    void roam();

    Strip anyStrip();
    remote::Member anyTrack();
    FaderValue anyFader();
    remote::AutoModeKey anyMode();

    VirtualRuntime& runtime;
    VirtualNetwork& network;
    const Scenario& scenario;
    const std::shared_ptr<std::string> ownAddress; // as it is at the moment
    const int number;
    const bool repeatsTouches; // or sends each touch and release once
    SeededRandom chance;
    SeededRandom roaming;
    int moves = 0;
    std::unique_ptr<remote::RemoteClient> remote;
    bool resting = false;

    // What takes the receiver long is asked for now and then only, so that all of it has its turn.
    TimePoint nextScan;
    TimePoint nextWalk;
    TimePoint nextMode;
    TimePoint nextWish;
};

} // namespace lumbrine::simulation
