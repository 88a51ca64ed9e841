// The runtime as the receiver gets it in a simulated session: virtual time that it shares with everybody else, and a
// life of its own. What the receiver starts on it is counted, and it can end as the receiver's program ends, while the
// host, the network and the phones go on.
#pragma once

#include "platform/virtual/virtual_runtime.h"

#include <map>
#include <memory>
#include <string>

namespace lumbrine::simulation {

// How much there was at the most.
struct Load {
    int threads = 0;                    // the main thread and the one that keeps delayed jobs included
    std::map<std::string, int> waiting; // in each serial queue, by its label: jobs that had not begun
};

class ReceiverRuntime final : public Runtime {
public:
    // The world outlives it.
    explicit ReceiverRuntime(VirtualRuntime& virtualWorld);

    // From now on sleeps return at once, hops to the main thread return without having run anything, and no job of the
    // background or of a serial queue begins. Jobs of the main thread and its timers go on. Main thread.
    void shutDown();

    const Load& peak() const { return most; }

    TimePoint now() const override { return world.now(); }
    void sleepFor(Duration duration) override;
    bool onMain() const override { return world.onMain(); }
    void postMain(Task task) override { world.postMain(std::move(task)); }
    void postMainAfter(Duration delay, Task task) override { world.postMainAfter(delay, std::move(task)); }
    void background(Priority priority, Task task) override;
    void backgroundAfter(Duration delay, Task task) override;
    std::unique_ptr<SerialQueue> serialQueue(std::string label, Priority priority) override;
    std::unique_ptr<RepeatingTimer> repeatOnMain(Duration interval, std::function<void()> tick) override {
        return world.repeatOnMain(interval, std::move(tick));
    }
    std::unique_ptr<Thread> startThread(std::string name, Task body) override;

protected:
    LockHooks* lockHooks() override { return world.lockHooks(); }
    void runOnMainAndWait(Task task) override;

private:
    class Queue;
    class CountedThread;

    Task counted(Task task);
    void oneThreadMore();

    VirtualRuntime& world;
    const std::unique_ptr<VirtualRuntime::Signal> ending; // for those who sleep
    bool ended = false;
    int threads = 2;
    Load most;
};

} // namespace lumbrine::simulation
