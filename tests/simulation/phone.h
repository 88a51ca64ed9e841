// Somebody at a phone: plays faders, presses and turns, forgets to let go, walks out of the network and back, takes
// over. And somebody who only has a socket and sends what is not its to send.
#pragma once

#include "platform/virtual/virtual_network.h"
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
    Phone(VirtualRuntime& rt, VirtualNetwork& virtualNetwork, const Scenario& decided, int number);

    void act(); // does something now, and again later, until `rest`
    void rest();

    remote::RemoteClient& client() { return *remote; }

private:
    void doSomething();
    void gesture(Strip strip, int movesLeft);
    void press(Strip strip);
    void walkOut(Duration absence);

    VirtualRuntime& runtime;
    VirtualNetwork& network;
    const Scenario& scenario;
    const std::string address;
    SeededRandom chance;
    std::unique_ptr<remote::RemoteClient> remote;
    bool resting = false;
};

// Main thread.
class Forger {
public:
    Forger(VirtualRuntime& rt, VirtualNetwork& network, std::uint64_t seed);
    ~Forger();

    void act();
    void rest() { resting = true; }

private:
    VirtualRuntime& runtime;
    DatagramSockets& sockets;
    SeededRandom chance;
    PeerAddress receiver;
    int fd;
    bool resting = false;
};

} // namespace lumbrine::simulation
