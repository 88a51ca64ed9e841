// Somebody who only has a socket and sends what is not its to send.
#pragma once

#include "platform/virtual/virtual_network.h"
#include "simulator/seeded_random.h"

#include <cstdint>

namespace lumbrine::simulation {

// Main thread.
class Forger {
public:
    Forger(VirtualRuntime& rt, VirtualNetwork& network, std::uint64_t seed);
    ~Forger();
    Forger(const Forger&) = delete;
    Forger& operator=(const Forger&) = delete;

    void act(); // now, and again and again until `rest`
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
