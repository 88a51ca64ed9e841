// Random datagrams from many sockets, as fast as they go.
#pragma once

#include "base/bytes.h"

#include <atomic>
#include <cstdint>
#include <random>
#include <thread>

namespace lumbrine::end_to_end {

// 0 to 3000 random bytes, half of them with a right version and an opcode behind it; never one that takes over, which
// every client may do. A seed decides them all.
class RandomDatagrams {
public:
    explicit RandomDatagrams(std::uint32_t seed) : random(seed) {}

    Bytes next();

private:
    std::mt19937 random;
};

// Sends from a thread of its own until it is destroyed, from a new port after every hundred datagrams or so.
class Flooder {
public:
    enum class Pace {
        // As fast as the receiver reads: it refuses each datagram that is not empty, and so tells how far it is. No
        // more are under way than fit into the buffer of a socket.
        answered,
        // As fast as the system sends. What finds the receiver's buffer full is lost there.
        unlimited
    };

    Flooder(std::uint16_t receiverPort, Pace chosenPace, std::uint32_t seed);
    ~Flooder();
    Flooder(const Flooder&) = delete;
    Flooder& operator=(const Flooder&) = delete;

    std::uint64_t sent() const { return sentCount; }

    // Datagrams that were not refused within a long time.
    std::uint64_t unanswered() const { return unansweredCount; }

private:
    void run();
    void floodFromOnePort();

    const std::uint16_t port;
    const Pace pace;
    RandomDatagrams datagrams;
    std::atomic<bool> stopping{false};
    std::atomic<std::uint64_t> sentCount{0};
    std::atomic<std::uint64_t> unansweredCount{0};
    std::thread thread;
};

} // namespace lumbrine::end_to_end
