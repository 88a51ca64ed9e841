#include "platform/virtual/virtual_main_queue.h"

#include <algorithm>
#include <utility>

namespace lumbrine {

struct VirtualMainQueue::Repetition {
    Duration interval;
    std::function<void()> tick;
    TimePoint due;
    bool wanted = true;
};

class VirtualMainQueue::Timer final : public RepeatingTimer {
public:
    explicit Timer(std::shared_ptr<Repetition> repetition) : repetition(std::move(repetition)) {}
    ~Timer() override { repetition->wanted = false; }

private:
    std::shared_ptr<Repetition> repetition;
};

void VirtualMainQueue::accept(Task task) {
    add(order == TimerOrder::whenDue ? jobs : unseen, std::move(task));
}

void VirtualMainQueue::add(RingQueue<Task>& queue, Task task) {
    if (scheduler.stopping()) return;
    queue.push(std::move(task));
    if (scheduler.mainThread().state == VirtualThread::State::idling) scheduler.wake(scheduler.mainThread());
}

void VirtualMainQueue::post(Task task) {
    add(jobs, std::move(task));
    scheduler.yield("a post to the main queue");
}

void VirtualMainQueue::postAfter(Duration delay, Task task) {
    if (delay <= Duration::zero()) return post(std::move(task));
    scheduler.schedule(scheduler.after(delay), *this, std::move(task), true);
    scheduler.yield("a delayed post to the main queue");
}

void VirtualMainQueue::postAndWait(Task task) {
    scheduler.expectNoMutexHeld("hops to the main queue");
    VirtualThread& caller = scheduler.self();
    add(jobs, [&] {
        task();
        scheduler.wake(caller);
    });
    scheduler.wait("its job on the main queue", std::nullopt);
}

std::unique_ptr<RepeatingTimer> VirtualMainQueue::repeat(Duration interval, std::function<void()> tick) {
    auto repetition = std::make_shared<Repetition>();
    repetition->interval = std::max(interval, Duration{1});
    repetition->tick = std::move(tick);
    repetition->due = scheduler.now();
    scheduleTick(repetition);
    return std::make_unique<Timer>(std::move(repetition));
}

// Schedules the next tick for the first multiple of the interval in the future, as the real timer does.
void VirtualMainQueue::scheduleTick(const std::shared_ptr<Repetition>& repetition) {
    const Duration late = scheduler.now() - repetition->due;
    repetition->due += repetition->interval * (late / repetition->interval + 1);
    scheduler.schedule(
        repetition->due, *this,
        [this, repetition] {
            if (!repetition->wanted) return;
            scheduleTick(repetition);
            repetition->tick();
        },
        true);
}

bool VirtualMainQueue::drain(TimePoint end, const std::function<bool()>* condition) {
    scheduler.resetSteps();
    const VirtualScheduler::MainAtWork mayStandStill(scheduler);
    for (;;) {
        while (!unseen.empty())
            jobs.push(unseen.pop());
        if (condition != nullptr && (*condition)()) return true;
        if (!jobs.empty()) {
            scheduler.yield("a job of the main queue");
            scheduler.countStep(scheduler.mainThread());
            jobs.pop()();
            scheduler.expectNoMutexHeld("ends a job of the main queue");
        } else if (!scheduler.idle(std::max(end, scheduler.now()), condition != nullptr)) {
            return condition != nullptr && (*condition)();
        }
    }
}

void VirtualMainQueue::clear() {
    const RingQueue<Task> dropped = std::exchange(jobs, {});
    const RingQueue<Task> droppedToo = std::exchange(unseen, {});
}

} // namespace lumbrine
