// A program on the network that answers every datagram as a receiver would, even one from a receiver: a receiver that
// does not recognise others of its kind.
#pragma once

#include "platform/virtual/virtual_network.h"
#include "simulator/seeded_random.h"

#include <memory>

namespace lumbrine::simulation {

inline constexpr const char* falseReceiverAddress = "192.168.1.4";

// Main thread; it answers on a thread of its own.
class FalseReceiver {
public:
    FalseReceiver(VirtualRuntime& rt, VirtualNetwork& virtualNetwork);
    ~FalseReceiver();
    FalseReceiver(const FalseReceiver&) = delete;
    FalseReceiver& operator=(const FalseReceiver&) = delete;

    // Says something to the receiver that only a receiver says, or has the receiver hear it from itself.
    void speak(SeededRandom& chance);

private:
    void answer();

    VirtualNetwork& network;
    DatagramSockets& sockets;
    PeerAddress receiver;
    int fd;
    std::unique_ptr<Thread> thread;
};

} // namespace lumbrine::simulation
