// Threads that stand still now and then, as when the system gives the processor to others: what a thread does then
// happens later than its own clock and its neighbours expect.
#pragma once

#include "platform/api/time.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

namespace lumbrine {

struct Standstill {
    Duration every = Duration::zero(); // on the average, for each thread by itself; zero: never
    Duration shortest = Duration::zero();
    Duration longest = Duration::zero();
    std::function<bool(std::string_view threadName)> meets = {}; // empty: every thread
};

// When one thread stands still, drawn from a stream of its own.
class Standstills {
public:
    // What is known of one thread.
    struct Pace {
        std::optional<TimePoint> next;
        std::uint64_t pointsLeft = 0; // where it could stop after that time, and does not yet
    };

    Standstills(std::uint64_t seed, Standstill kind) : how(std::move(kind)), draws(seed) {}

    // For how long the thread stands still at this point of its program; absent when it goes on.
    std::optional<Duration> at(TimePoint now, std::string_view threadName, Pace& pace);

    // Nobody stands still from now on.
    void end() { how.every = Duration::zero(); }

private:
    void drawNext(TimePoint now, Pace& pace);
    std::uint64_t below(std::uint64_t limit);

    Standstill how;
    std::uint64_t draws;
};

} // namespace lumbrine
