#include "platform/posix/run_loop.h"

#include "platform/api/runtime.h"

#include <algorithm>
#include <utility>

namespace lumbrine {

namespace {

// One repetition; alive until both its timer and its next tick are gone.
class Repetition : public std::enable_shared_from_this<Repetition> {
public:
    Repetition(TimedJobs& mainJobs, Duration timerInterval, std::function<void()> timerTick)
        : jobs(mainJobs), interval(std::max(timerInterval, Duration{1})), tick(std::move(timerTick)),
          due(TimedJobs::now()) {}

    // At the first multiple of the interval that still lies ahead, so ticks that come late do not pile up.
    void schedule() {
        due += interval * ((TimedJobs::now() - due) / interval + 1);
        jobs.postAt(due, [self = shared_from_this()] { self->run(); });
    }

    void end() { wanted = false; }

private:
    void run() {
        if (!wanted) return;
        schedule();
        tick();
    }

    TimedJobs& jobs;
    const Duration interval;
    const std::function<void()> tick;
    TimePoint due;
    std::atomic<bool> wanted{true};
};

class LoopTimer final : public RepeatingTimer {
public:
    explicit LoopTimer(std::shared_ptr<Repetition> shared) : repetition(std::move(shared)) {}
    ~LoopTimer() override { repetition->end(); }

private:
    const std::shared_ptr<Repetition> repetition;
};

} // namespace

RunLoop::RunLoop() : mainThread(std::this_thread::get_id()) {}

void RunLoop::run() {
    mainThread = std::this_thread::get_id();
    jobs.run();
}

void RunLoop::stop() {
    jobs.stop();
}

bool RunLoop::onMain() const {
    return mainThread.load() == std::this_thread::get_id();
}

void RunLoop::post(Task task) {
    jobs.post(std::move(task));
}

void RunLoop::postAfter(Duration delay, Task task) {
    if (delay <= Duration::zero()) return post(std::move(task));
    jobs.postAt(TimedJobs::after(delay), std::move(task));
}

std::unique_ptr<RepeatingTimer> RunLoop::repeat(Duration interval, std::function<void()> tick) {
    auto repetition = std::make_shared<Repetition>(jobs, interval, std::move(tick));
    repetition->schedule();
    return std::make_unique<LoopTimer>(std::move(repetition));
}

} // namespace lumbrine
