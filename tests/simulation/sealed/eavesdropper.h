// Somebody on the network who reads every datagram, writes any address, changes what he likes and plays everything
// again, but has no key.
#pragma once

#include "platform/virtual/virtual_network.h"
#include "simulator/seeded_random.h"

#include <cstdint>
#include <string>
#include <vector>

namespace lumbrine::simulation {

// Main thread, but for `hear`.
class Eavesdropper {
public:
    Eavesdropper(VirtualRuntime& rt, VirtualNetwork& virtualNetwork, std::uint64_t seed);

    void act(); // now, and again and again until `rest`
    void rest() { resting = true; }

    // A datagram that somebody sends. False for one of his own.
    bool hear(const std::string& host, std::uint16_t port, ByteView bytes);

    int forgeries() const { return count; }

private:
    struct Heard {
        TimePoint at;
        std::string host;
        std::uint16_t port;
        Bytes bytes;
    };

    void forge();
    Bytes changed(const Bytes& original);
    Bytes ownWords();
    const Heard& anyHeard();
    void say(const std::string& host, std::uint16_t port, const Bytes& bytes);

    VirtualRuntime& runtime;
    VirtualNetwork& network;
    SeededRandom chance;
    std::vector<Heard> recording;
    int count = 0;
    bool speaking = false;
    bool resting = false;
};

} // namespace lumbrine::simulation
