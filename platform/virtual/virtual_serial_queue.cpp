#include "platform/virtual/virtual_serial_queue.h"

namespace lumbrine {

VirtualSerialQueue::VirtualSerialQueue(VirtualScheduler& scheduler, std::string name)
    : scheduler(scheduler), name(std::move(name)) {}

VirtualSerialQueue::~VirtualSerialQueue() {
    if (runner == &scheduler.self()) scheduler.fail("the queue " + name + " is destroyed from one of its own jobs");
    scheduler.expectNoMutexHeld("waits for the end of a queue");
    scheduler.forget(*this);
    const RingQueue<Task> dropped = std::exchange(jobs, {});
    while (launched) { // uninterrupted: the running job uses this queue until it ends
        waitingForTheEnd.push_back(&scheduler.self());
        scheduler.waitUninterrupted("the running job of " + name);
    }
}

void VirtualSerialQueue::post(Task task) {
    accept(std::move(task));
    scheduler.yield("a post to a queue");
}

void VirtualSerialQueue::postAfter(Duration delay, Task task) {
    if (delay <= Duration::zero()) return post(std::move(task));
    scheduler.schedule(scheduler.after(delay), *this, std::move(task), false);
    scheduler.yield("a delayed post to a queue");
}

void VirtualSerialQueue::accept(Task task) {
    if (scheduler.stopping()) return;
    jobs.push(std::move(task));
    if (launched) return;
    launched = true;
    scheduler.launch(name, [this] { runAll(); }, true);
}

void VirtualSerialQueue::runAll() {
    runner = &scheduler.self();
    while (!jobs.empty() && !scheduler.stopping()) {
        jobs.pop()();
        scheduler.expectNoMutexHeld("ends a job");
        if (!jobs.empty()) scheduler.yield("the job before");
    }
    runner = nullptr;
    launched = false;
    for (VirtualThread* waiting : waitingForTheEnd)
        scheduler.wake(*waiting);
}

VirtualNamedThread::VirtualNamedThread(VirtualScheduler& scheduler, const std::string& name, Task body)
    : scheduler(scheduler), course(std::make_shared<Course>()) {
    course->body = std::move(body);
    scheduler.launch(
        name,
        [&world = scheduler, shared = course] {
            shared->body();
            shared->body = Task{};
            shared->ended = true;
            if (shared->waiting != nullptr) world.wake(*shared->waiting);
        },
        true);
    scheduler.yield("a thread's start");
}

VirtualNamedThread::~VirtualNamedThread() {
    scheduler.expectNoMutexHeld("waits for the end of a thread");
    while (!course->ended) {
        course->waiting = &scheduler.self();
        scheduler.waitUninterrupted("the end of a thread");
    }
}

} // namespace lumbrine
