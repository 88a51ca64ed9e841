#include "platform/virtual/virtual_runtime.h"

#include "platform/virtual/virtual_main_queue.h"
#include "platform/virtual/virtual_scheduler.h"
#include "platform/virtual/virtual_serial_queue.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace lumbrine {

// The state of all mutexes. A Mutex itself has none in virtual time: this object and the threads record what is held.
class VirtualRuntime::Locks final : public Runtime::LockHooks {
public:
    explicit Locks(VirtualScheduler& scheduler) : scheduler(scheduler) {}

    void lock(Mutex& mutex) override {
        VirtualThread& self = scheduler.self();
        const bool nests = mutex.nesting == Nesting::inBackEnd && self.holds.size() == 1 &&
                           self.holds.front()->nesting == Nesting::overBackEnd;
        if (!nests) scheduler.expectNoMutexHeld("takes a Mutex");
        scheduler.yield("a Mutex");
        while (isHeld(mutex)) {
            waiting.push_back({&mutex, &self});
            scheduler.waitUninterrupted("a Mutex that another thread holds");
        }
        self.holds.push_back(&mutex);
        held.push_back(&mutex);
    }

    void unlock(Mutex& mutex) override {
        VirtualThread& self = scheduler.self();
        if (std::erase(self.holds, &mutex) == 0) scheduler.fail(self.name + " unlocks a Mutex that it does not hold");
        std::erase(held, &mutex);
        std::erase_if(waiting, [&](const Waiting& entry) {
            if (entry.mutex != &mutex) return false;
            scheduler.wake(*entry.thread);
            return true;
        });
        scheduler.yield("an unlock");
    }

private:
    struct Waiting {
        const Mutex* mutex;
        VirtualThread* thread;
    };

    bool isHeld(const Mutex& mutex) const { return std::ranges::find(held, &mutex) != held.end(); }

    VirtualScheduler& scheduler;
    std::vector<const Mutex*> held;
    std::vector<Waiting> waiting;
};

class VirtualRuntime::Background final : public VirtualScheduler::Sink {
public:
    explicit Background(VirtualScheduler& scheduler) : scheduler(scheduler) {}
    void accept(Task task) override { scheduler.launch({}, std::move(task), false); }

private:
    VirtualScheduler& scheduler;
};

namespace {

class VirtualSignal final : public VirtualRuntime::Signal {
public:
    explicit VirtualSignal(VirtualScheduler& scheduler) : scheduler(scheduler) {}

    bool wait(std::string_view what, std::optional<TimePoint> deadline) override {
        scheduler.expectNoMutexHeld("waits for a signal");
        VirtualThread& self = scheduler.self();
        waiting.push_back(&self);
        const bool notified = scheduler.wait(what, deadline);
        std::erase(waiting, &self);
        return notified;
    }

    void notifyAll() override {
        for (VirtualThread* thread : std::exchange(waiting, {}))
            scheduler.wake(*thread);
    }

private:
    VirtualScheduler& scheduler;
    std::vector<VirtualThread*> waiting;
};

} // namespace

VirtualRuntime::VirtualRuntime(const Options& options)
    : scheduler(std::make_unique<VirtualScheduler>(options)),
      mainQueue(std::make_unique<VirtualMainQueue>(*scheduler, options.timerOrder)),
      locks(std::make_unique<Locks>(*scheduler)), delayed(std::make_unique<Background>(*scheduler)),
      firstSeed(options.seed) {}

VirtualRuntime::~VirtualRuntime() {
    scheduler->stop();
    mainQueue->clear();
    scheduler->join();
}

void VirtualRuntime::runFor(Duration duration) {
    drainMain(duration, nullptr);
}

bool VirtualRuntime::runUntil(const std::function<bool()>& condition, Duration limit) {
    return drainMain(limit, &condition);
}

bool VirtualRuntime::drainMain(Duration limit, const std::function<bool()>* condition) {
    if (!scheduler->onMain()) scheduler->fail("time is let pass on a thread that is not the main thread");
    scheduler->expectNoMutexHeld("lets time pass");
    return mainQueue->drain(scheduler->after(limit), condition);
}

void VirtualRuntime::endStandstills() {
    scheduler->endStandstills();
}

void VirtualRuntime::sleepMachine(Duration duration) {
    if (!scheduler->onMain()) scheduler->fail("the machine sleeps on a thread that is not the main thread");
    scheduler->jump(duration);
}

const std::vector<Pause>& VirtualRuntime::pauses() const {
    return scheduler->pauses();
}

std::uint64_t VirtualRuntime::traceHash() const {
    return scheduler->traceHash();
}

std::uint64_t VirtualRuntime::seed() const {
    return firstSeed;
}

std::uint64_t VirtualRuntime::random() {
    return scheduler->random();
}

std::unique_ptr<VirtualRuntime::Signal> VirtualRuntime::makeSignal() {
    return std::make_unique<VirtualSignal>(*scheduler);
}

void VirtualRuntime::yield(std::string_view what) {
    scheduler->yield(what);
}

void VirtualRuntime::rest(std::uint64_t number) {
    scheduler->expectNoMutexHeld("rests");
    scheduler->rest(number);
}

TimePoint VirtualRuntime::now() const {
    return scheduler->now();
}

void VirtualRuntime::sleepFor(Duration duration) {
    scheduler->expectNoMutexHeld("sleeps");
    if (duration <= Duration::zero()) return scheduler->yield("a sleep of no length");
    scheduler->wait("the end of its sleep", scheduler->after(duration));
}

bool VirtualRuntime::onMain() const {
    return scheduler->onMain();
}

void VirtualRuntime::postMain(Task task) {
    mainQueue->post(std::move(task));
}

void VirtualRuntime::postMainAfter(Duration delay, Task task) {
    mainQueue->postAfter(delay, std::move(task));
}

void VirtualRuntime::runOnMainAndWait(Task task) {
    mainQueue->postAndWait(std::move(task));
}

void VirtualRuntime::background(Priority, Task task) {
    delayed->accept(std::move(task));
    scheduler->yield("a background job's start");
}

void VirtualRuntime::backgroundAfter(Duration delay, Task task) {
    if (delay <= Duration::zero()) return background(Priority::normal, std::move(task));
    scheduler->schedule(scheduler->after(delay), *delayed, std::move(task), false);
    scheduler->yield("a delayed background job's start");
}

std::unique_ptr<SerialQueue> VirtualRuntime::serialQueue(std::string label, Priority) {
    return std::make_unique<VirtualSerialQueue>(*scheduler, std::move(label));
}

std::unique_ptr<RepeatingTimer> VirtualRuntime::repeatOnMain(Duration interval, std::function<void()> tick) {
    return mainQueue->repeat(interval, std::move(tick));
}

std::unique_ptr<Thread> VirtualRuntime::startThread(std::string name, Task body) {
    return std::make_unique<VirtualNamedThread>(*scheduler, name, std::move(body));
}

Runtime::LockHooks* VirtualRuntime::lockHooks() {
    return locks.get();
}

} // namespace lumbrine
