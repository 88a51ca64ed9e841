// Virtual time: the whole program in one process, hours of it in seconds, the same each time for the same seed.
//
// Every thread and every job is a real thread, but exactly one of them runs at a time. The running one hands the baton
// on at every sleep, lock, unlock, post, hop, send and receive; the seed chooses who goes next among those that are
// ready. When nobody is ready, time jumps to the next deadline. When there is no deadline either, that is a deadlock:
// the program prints what every thread waits for, and the seed, and aborts. So it does when a great many steps pass
// without time going on (a livelock), and when a Mutex is held across a sleep, a hop, a wait or another Mutex.
//
// The thread that makes the runtime is the main thread. A test is therefore main-thread code: it acts, lets time pass
// with runFor, and looks at the state.
#pragma once

#include "platform/api/main_loop.h"
#include "platform/api/runtime.h"
#include "platform/virtual/standstills.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace lumbrine {

class StayOnThisCore;
class VirtualMainQueue;
class VirtualScheduler;

// Whoever derives from it sees the jobs that are given to it.
class VirtualRuntime : public Runtime {
public:
    struct Options {
        std::uint64_t seed = 1;
        std::uint64_t stepLimit = 1'000'000; // choices within one instant before it counts as a livelock

        // At a point where it could go on, a thread lets the seed choose about once in so many times, at least 1.
        // Interruptions in the middle of things become rarer, and the program several times as fast.
        std::uint64_t patience = 1;

        // `inOrder`: a thread goes on until it waits, and whoever became ready first is next. The history no longer
        // hangs on how often the program could have handed the baton on, so two builds of one program can be compared.
        enum class Turns { drawn, inOrder } turns = Turns::drawn;

        // Wherever it could hand the baton on, a thread may stand still while the others go on, also with a Mutex held.
        // Of the main thread: while time passes, so that `runFor` may return later than it should.
        Standstill standstill = {};
        Standstill mainStandstill = {};

        TimerOrder timerOrder = TimerOrder::whenDue; // on the main queue
    };

    VirtualRuntime() : VirtualRuntime(Options{}) {}
    explicit VirtualRuntime(const Options& options);

    // Everything that used the runtime and could wait for something (servers, queues, timers) is gone before; what is
    // still in the background is woken from its sleeps and runs to its end.
    ~VirtualRuntime() override;

    // Lets time pass, on the main thread: runs everything that becomes due until `duration` from now, that instant
    // included, then returns at exactly that time.
    void runFor(Duration duration);

    // Runs what is ready now, without letting time pass.
    void runUntilIdle() { runFor(Duration::zero()); }

    // Lets time pass until the condition holds, at most `limit`; true when it held. The condition is looked at on the
    // main thread: after each of its jobs, whenever another thread hands the baton on, and before time goes on.
    bool runUntil(const std::function<bool()>& condition, Duration limit);

    // Nobody stands still by chance from now on.
    void endStandstills();

    // The machine sleeps: the clock goes on by `duration` at once, and nobody runs meanwhile. What would have run in
    // that time is late afterwards. On the main thread.
    void sleepMachine(Duration duration);

    // A number made of every choice and every jump of time so far. Equal seeds and equal programs give equal hashes.
    std::uint64_t traceHash() const;

    std::uint64_t seed() const;

    // Choices for a test or a back end that must replay with the seed: the next number of the seed's own stream.
    std::uint64_t random();

    // For virtual back ends: a place where a thread waits for something that another thread brings.
    class Signal {
    public:
        virtual ~Signal() = default;

        // Waits for a notify that comes after the call, or until the deadline; false when the deadline passed or the
        // runtime is being shut down. `what` appears in the deadlock report.
        virtual bool wait(std::string_view what, std::optional<TimePoint> deadline) = 0;

        // Makes every thread that waits here ready. The caller keeps the baton.
        virtual void notifyAll() = 0;
    };
    std::unique_ptr<Signal> makeSignal();

    // A point at which another thread may go first; back ends call it where a real system could switch.
    void yield(std::string_view what);

    TimePoint now() const override;
    void sleepFor(Duration duration) override;
    bool onMain() const override;
    void postMain(Task task) override;
    void postMainAfter(Duration delay, Task task) override;
    void background(Priority priority, Task task) override;
    void backgroundAfter(Duration delay, Task task) override;
    std::unique_ptr<SerialQueue> serialQueue(std::string label, Priority priority) override;
    std::unique_ptr<RepeatingTimer> repeatOnMain(Duration interval, std::function<void()> tick) override;
    std::unique_ptr<Thread> startThread(std::string name, Task body) override;

    // For a runtime that has this one do its work.
    LockHooks* lockHooks() override;
    void runOnMainAndWait(Task task) override;

private:
    class Locks;
    class Background;

    bool drainMain(Duration limit, const std::function<bool()>* condition);

    std::unique_ptr<StayOnThisCore> core;
    std::unique_ptr<VirtualScheduler> scheduler;
    std::unique_ptr<VirtualMainQueue> mainQueue;
    std::unique_ptr<Locks> locks;
    std::unique_ptr<Background> delayed;
    const std::uint64_t firstSeed;
};

} // namespace lumbrine
