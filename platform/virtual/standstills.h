// Random pauses of threads, as on a system that gives the processor to other programs. Whatever the thread does next
// happens later than the thread itself and the others expect.
#pragma once

#include "platform/api/time.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

namespace lumbrine {

struct Standstill {
    Duration every = Duration::zero(); // average time between two pauses of one thread; zero means no pauses
    Duration shortest = Duration::zero();
    Duration longest = Duration::zero();
    std::function<bool(std::string_view threadName)> meets = {}; // which threads pause; empty means all
};

// A stretch of time in which a thread or the whole machine did nothing.
struct Pause {
    TimePoint from;
    TimePoint until;
};

// Decides when a thread pauses. It draws from its own random stream, so that pauses do not change other choices.
class Standstills {
public:
    // The state of one thread.
    struct Pace {
        std::optional<TimePoint> next; // the earliest time of its next pause
        std::uint64_t pointsLeft = 0;  // how many switching points it passes after that time before it pauses
    };

    Standstills(std::uint64_t seed, Standstill how) : how(std::move(how)), draws(seed) {}

    // Called at each switching point of a thread. Returns how long the thread pauses here; absent when it goes on.
    std::optional<Duration> at(TimePoint now, std::string_view threadName, Pace& pace);

    // No thread pauses from now on.
    void end() { how.every = Duration::zero(); }

private:
    void drawNext(TimePoint now, Pace& pace);
    std::uint64_t below(std::uint64_t limit);

    Standstill how;
    std::uint64_t draws;
};

} // namespace lumbrine
