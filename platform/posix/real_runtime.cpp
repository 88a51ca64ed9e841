#include "platform/posix/real_runtime.h"

#include "platform/posix/os_thread.h"
#include "platform/posix/own_thread.h"

#include <utility>

namespace lumbrine {

namespace {

Urgency urgencyOf(Priority priority) {
    switch (priority) {
    case Priority::utility:
        return Urgency::utility;
    case Priority::userInitiated:
        return Urgency::userInitiated;
    case Priority::normal:
        break;
    }
    return Urgency::normal;
}

} // namespace

RealRuntime::RealRuntime(MainLoop& loop)
    : loop(loop), delays(std::make_unique<OwnThreadQueue>("delays", Urgency::userInitiated, stopping)) {}

RealRuntime::~RealRuntime() {
    shutDown();
}

void RealRuntime::shutDown() {
    {
        const std::lock_guard lock(mutex);
        stopping = true;
        ending.notify_all();
        arrived.notify_all();
    }
    threads.stop();
}

TimePoint RealRuntime::now() const {
    return TimedJobs::now();
}

void RealRuntime::sleepFor(Duration duration) {
    const TimePoint end = TimedJobs::after(duration);
    std::unique_lock lock(mutex);
    while (!stopping && now() < end)
        waitUntil(ending, lock, end);
}

bool RealRuntime::onMain() const {
    return loop.onMain();
}

void RealRuntime::postMain(Task task) {
    loop.post(std::move(task));
}

void RealRuntime::postMainAfter(Duration delay, Task task) {
    loop.postAfter(delay, std::move(task));
}

// Shared between the caller and the job, because the job may still be in the main queue when the caller has given up.
struct RealRuntime::Hop {
    explicit Hop(Task job) : job(std::move(job)) {}

    Task job;
    enum class State { waiting, running, done, abandoned } state = State::waiting;
};

void RealRuntime::runOnMainAndWait(Task task) {
    const auto hop = std::make_shared<Hop>(std::move(task));
    loop.post([this, hop] {
        {
            const std::lock_guard lock(mutex);
            if (hop->state == Hop::State::abandoned) return;
            hop->state = Hop::State::running;
        }
        hop->job();
        const std::lock_guard lock(mutex);
        hop->state = Hop::State::done;
        arrived.notify_all();
    });
    std::unique_lock lock(mutex);
    // After shutdown the main loop may never run the job. But a job that already runs must be waited for: it uses the
    // caller's variables.
    arrived.wait(lock,
                 [&] { return hop->state == Hop::State::done || (stopping && hop->state == Hop::State::waiting); });
    if (hop->state == Hop::State::waiting) hop->state = Hop::State::abandoned;
}

void RealRuntime::background(Priority priority, Task task) {
    threads.run([urgency = urgencyOf(priority), job = std::move(task)]() mutable {
        setUrgency(urgency);
        job();
    });
}

void RealRuntime::backgroundAfter(Duration delay, Task task) {
    if (delay <= Duration::zero()) return background(Priority::normal, std::move(task));
    delays->postAfter(delay, [this, job = std::move(task)]() mutable { background(Priority::normal, std::move(job)); });
}

std::unique_ptr<SerialQueue> RealRuntime::serialQueue(std::string label, Priority priority) {
    return std::make_unique<OwnThreadQueue>(std::move(label), urgencyOf(priority), stopping);
}

std::unique_ptr<RepeatingTimer> RealRuntime::repeatOnMain(Duration interval, std::function<void()> tick) {
    return loop.repeat(interval, std::move(tick));
}

std::unique_ptr<Thread> RealRuntime::startThread(std::string name, Task body) {
    return std::make_unique<OwnThread>(std::move(name), std::move(body));
}

} // namespace lumbrine
