// Somebody at a phone with a key: plays faders and presses switches, walks out of the network and back, into another
// one, takes over, and restarts the program. No fader value is sent twice in a session.
#pragma once

#include "platform/virtual/toy_secrets.h"
#include "platform/virtual/virtual_network.h"
#include "remote/remote_client.h"
#include "simulator/seeded_random.h"
#include "tests/simulation/sealed/sealed_scenario.h"

#include <memory>
#include <string>

namespace lumbrine::simulation {

inline const PairingKey studiosKey = *PairingKey::parse("742BCM0SCXPZA154Z02S9P89HC");

// Main thread.
class SealedPhone {
public:
    // `lastValue` is the last fader value that any phone has sent.
    SealedPhone(VirtualRuntime& rt, VirtualNetwork& virtualNetwork, const SealedScenario& decided, int phoneNumber,
                int& lastValue);

    void act(); // does something now, and again later, until `rest`
    void rest();

    void touch(Strip strip) { remote->touch(strip); }
    int move(Strip strip); // the value
    void release(Strip strip) { remote->release(strip); }

    remote::RemoteClient& client() { return *remote; }

private:
    void start();
    void gesture(Strip strip, int movesLeft);
    void press(Strip strip);
    void walkOut(Duration absence);
    void roam();
    Strip anyStrip() { return *Strip::of(static_cast<int>(chance.below(stripCount))); }

    VirtualRuntime& runtime;
    VirtualNetwork& network;
    const SealedScenario& scenario;
    const int number;
    const std::shared_ptr<std::string> address; // as it is at the moment
    int& value;
    SeededRandom chance;
    ToySecrets secrets;
    int moves = 0; // into other networks
    std::unique_ptr<remote::RemoteClient> remote;
    bool resting = false;
};

} // namespace lumbrine::simulation
