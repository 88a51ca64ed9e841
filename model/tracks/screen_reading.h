// Reads Pro Tools' windows so seldom that Pro Tools does not feel it: one reading at a time, and at most a twentieth of
// the time. A reading runs on a background thread of its own, so nothing else waits for it.
#pragma once

#include "model/state/activity_log.h"
#include "model/state/jobs.h"
#include "screen/no_reading.h"

#include <functional>
#include <optional>
#include <vector>

namespace lumbrine {

// Main thread only.
class ScreenReading {
public:
    enum class Kind { names, comments };

    // Runs on a background thread and may block. Returns why it brought nothing, if so.
    using Reading = std::function<std::optional<NoReading>()>;

    // After a reading nothing is read for so many times as long as it took.
    static constexpr int restFactor = 20;

    // No reading takes longer while the computer is awake. After a longer one there is no rest: the computer slept.
    static constexpr Duration longest = seconds(11);

    // After the system has refused a reading, nothing is read for so long. That is logged, once until a reading works.
    static constexpr Duration restWhenRefused = seconds(30);

    ScreenReading(const Jobs& jobs, ActivityLog& log) : jobs(jobs), log(log) {}

    // Reads as soon as it may. Readings run in the order in which they were wished for; a kind that waits already keeps
    // its place. Returns at once.
    void wish(Kind kind, Reading reading);

private:
    struct Wish {
        Kind kind;
        Reading reading;
    };

    void proceed();
    void begin(Reading reading);
    void ended(Duration took, std::optional<NoReading> failure);

    const Jobs& jobs;
    ActivityLog& log;
    std::vector<Wish> waiting;
    bool isReading = false;
    bool isResting = false; // a delayed job goes on after the rest
    TimePoint restUntil = distantPast;
    bool refusalTold = false;
};

} // namespace lumbrine
