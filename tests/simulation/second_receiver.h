// Another receiver on the network, with nothing to control, and somebody who makes the two talk to each other.
#pragma once

#include "platform/virtual/virtual_network.h"
#include "simulator/seeded_random.h"

#include <memory>

namespace lumbrine::simulation {

inline constexpr const char* secondReceiverAddress = "192.168.1.3";

// Main thread.
class SecondReceiver {
public:
    SecondReceiver(VirtualRuntime& rt, VirtualNetwork& virtualNetwork);

    // Lets time pass until it is gone.
    ~SecondReceiver();
    SecondReceiver(const SecondReceiver&) = delete;
    SecondReceiver& operator=(const SecondReceiver&) = delete;

    // Sends one of the two a datagram that seems to come from the other.
    void forge(SeededRandom& chance);

private:
    struct Rig;

    VirtualRuntime& runtime;
    VirtualNetwork& network;
    std::unique_ptr<Rig> rig;
};

} // namespace lumbrine::simulation
