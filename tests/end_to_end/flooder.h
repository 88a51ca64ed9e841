// For tests: sends random datagrams from many sockets as fast as possible.
#pragma once

#include "base/bytes.h"

#include <atomic>
#include <cstdint>
#include <random>
#include <thread>

namespace lumbrine::end_to_end {

// Makes datagrams of 0 to 3000 random bytes. Half of them begin with the right version and an opcode, but never with
// TakeOver, which would be obeyed. The seed decides all of them.
class RandomDatagrams {
public:
    explicit RandomDatagrams(std::uint32_t seed) : random(seed) {}

    Bytes next();

private:
    std::mt19937 random;
};

// Sends on a separate thread until it is destroyed. It changes to a new port after about a hundred datagrams.
class Flooder {
public:
    enum class Pace {
        // As fast as the receiver reads. It refuses each non-empty datagram, which shows how many it has read; no more
        // are on their way than the buffer of a socket holds.
        answered,
        // As fast as the system sends. Datagrams are lost when the receiver's buffer is full.
        unlimited
    };

    Flooder(std::uint16_t port, Pace pace, std::uint32_t seed);
    ~Flooder();
    Flooder(const Flooder&) = delete;
    Flooder& operator=(const Flooder&) = delete;

    std::uint64_t sent() const { return sentCount; }

    // The number of datagrams that were not refused within a long time.
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
