#include "tests/simulation/receiver_runtime.h"

#include <algorithm>
#include <utility>

namespace lumbrine::simulation {

class ReceiverRuntime::Queue final : public SerialQueue {
public:
    Queue(ReceiverRuntime& owner, std::unique_ptr<SerialQueue> real)
        : runtime(owner), most(owner.most.waiting[std::string(real->label())]), queue(std::move(real)) {
        runtime.oneThreadMore();
    }
    ~Queue() override {
        queue.reset(); // its last job uses the counts
        --runtime.threads;
    }

    void post(Task task) override { queue->post(counted(std::move(task))); }
    void postAfter(Duration delay, Task task) override { queue->postAfter(delay, counted(std::move(task))); }
    std::string_view label() const override { return queue->label(); }

private:
    Task counted(Task task) {
        most = std::max(most, ++waiting);
        return [this, job = std::move(task)]() mutable {
            --waiting;
            if (!runtime.ended) job();
        };
    }

    ReceiverRuntime& runtime;
    int& most;
    int waiting = 0;
    std::unique_ptr<SerialQueue> queue;
};

class ReceiverRuntime::CountedThread final : public Thread {
public:
    CountedThread(ReceiverRuntime& owner, std::unique_ptr<Thread> real) : runtime(owner), thread(std::move(real)) {}
    ~CountedThread() override {
        thread.reset();
        --runtime.threads;
    }

private:
    ReceiverRuntime& runtime;
    std::unique_ptr<Thread> thread;
};

ReceiverRuntime::ReceiverRuntime(VirtualRuntime& virtualWorld) : world(virtualWorld), ending(world.makeSignal()) {
    most.threads = threads;
}

void ReceiverRuntime::shutDown() {
    ended = true;
    ending->notifyAll();
}

void ReceiverRuntime::sleepFor(Duration duration) {
    if (ended || duration <= Duration::zero()) return world.sleepFor(Duration::zero());
    ending->wait("the end of its sleep", world.now() + duration);
}

void ReceiverRuntime::background(Priority priority, Task task) {
    world.background(priority, counted(std::move(task)));
}

void ReceiverRuntime::backgroundAfter(Duration delay, Task task) {
    world.backgroundAfter(delay, counted(std::move(task)));
}

// A job in the background has a thread from its beginning to its end.
Task ReceiverRuntime::counted(Task task) {
    return [this, job = std::move(task)]() mutable {
        if (ended) return;
        oneThreadMore();
        job();
        job = Task{};
        --threads;
    };
}

std::unique_ptr<SerialQueue> ReceiverRuntime::serialQueue(std::string label, Priority priority) {
    return std::make_unique<Queue>(*this, world.serialQueue(std::move(label), priority));
}

std::unique_ptr<Thread> ReceiverRuntime::startThread(std::string name, Task body) {
    oneThreadMore();
    return std::make_unique<CountedThread>(*this, world.startThread(std::move(name), std::move(body)));
}

void ReceiverRuntime::runOnMainAndWait(Task task) {
    world.runOnMainAndWait([this, job = std::move(task)]() mutable {
        if (!ended) job();
    });
}

void ReceiverRuntime::oneThreadMore() {
    most.threads = std::max(most.threads, ++threads);
}

} // namespace lumbrine::simulation
