#include "platform/posix/repetition.h"

#include "platform/posix/timed_jobs.h"

#include <algorithm>
#include <atomic>
#include <utility>

namespace lumbrine {

namespace {

// Shared by the timer object and by the posted tick, so it lives until both are gone.
class Repetition : public std::enable_shared_from_this<Repetition> {
public:
    Repetition(std::function<void(TimePoint, Task)> postAt, Duration timerInterval, std::function<void()> tick)
        : postAt(std::move(postAt)), interval(std::max(timerInterval, Duration{1})), tick(std::move(tick)),
          due(TimedJobs::now()) {}

    // Posts the next tick for the first multiple of the interval in the future, so that late ticks do not pile up.
    void schedule() {
        due += interval * ((TimedJobs::now() - due) / interval + 1);
        postAt(due, [self = shared_from_this()] { self->run(); });
    }

    void end() { wanted = false; }

private:
    void run() {
        if (!wanted) return;
        schedule(); // first, because `tick` may destroy the timer
        tick();
    }

    const std::function<void(TimePoint, Task)> postAt;
    const Duration interval;
    const std::function<void()> tick;
    TimePoint due;
    std::atomic<bool> wanted{true};
};

class LoopTimer final : public RepeatingTimer {
public:
    explicit LoopTimer(std::shared_ptr<Repetition> repetition) : repetition(std::move(repetition)) {}
    ~LoopTimer() override { repetition->end(); }

private:
    const std::shared_ptr<Repetition> repetition;
};

} // namespace

std::unique_ptr<RepeatingTimer> repeatWith(std::function<void(TimePoint, Task)> postAt, Duration interval,
                                           std::function<void()> tick) {
    auto repetition = std::make_shared<Repetition>(std::move(postAt), interval, std::move(tick));
    repetition->schedule();
    return std::make_unique<LoopTimer>(std::move(repetition));
}

} // namespace lumbrine
