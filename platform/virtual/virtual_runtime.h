// Virtual time: runs a whole program in one process, hours of it in seconds, and the same way each time for the same
// seed.
//
// Every thread and every job has a stack of its own, but exactly one runs at a time. At every sleep, lock, unlock,
// post, hop, send and receive the running thread passes on the baton, and the seed chooses the next thread among those
// that are ready. When no thread is ready, time jumps to the next deadline. When there is no deadline either, the
// program is deadlocked: it prints the seed and what every thread waits for, and aborts. It also aborts when very many
// steps pass while time stands still (a livelock), and when a Mutex is held across a sleep, a hop, a wait or another
// Mutex.
//
// The thread that creates the runtime is the main thread. So a test is main-thread code: it acts, lets time pass with
// runFor, and checks the state.
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
#include <vector>

namespace lumbrine {

class VirtualMainQueue;
class VirtualScheduler;

// Not final: a derived class can observe the jobs that are posted.
class VirtualRuntime : public Runtime {
public:
    struct Options {
        std::uint64_t seed = 1;
        std::uint64_t stepLimit = 1'000'000; // more choices than this at one instant count as a livelock

        // A thread that could go on passes on the baton at about one of so many switching points (at least 1). Higher
        // values make interruptions rarer and the program several times as fast.
        std::uint64_t patience = 1;

        // With `inOrder`, a thread goes on until it waits, and the thread that became ready first is next. Then the
        // history does not depend on the number of switching points, so two builds of one program can be compared. With
        // `mainLast`, the same, but the main thread is next only when no other thread is ready: then the history of
        // some threads does not depend on others that share the runtime without touching what those do.
        enum class Turns { drawn, inOrder, mainLast } turns = Turns::drawn;

        // Pauses of threads, and of the main thread. A thread may pause at every switching point, also while it holds a
        // Mutex. The main thread pauses only inside `runFor` and `runUntil`, which may then return late.
        Standstill standstill = {};
        Standstill mainStandstill = {};

        TimerOrder timerOrder = TimerOrder::whenDue; // on the main queue
    };

    VirtualRuntime() : VirtualRuntime(Options{}) {}
    explicit VirtualRuntime(const Options& options);

    // Destroy everything that uses the runtime and can wait (servers, queues, timers) before it. Background jobs that
    // still run are woken from their sleeps and run to their end.
    ~VirtualRuntime() override;

    // Lets `duration` pass. Runs everything that becomes due until then, the last instant included, and returns at
    // exactly that time. Main thread only.
    void runFor(Duration duration);

    // Runs everything that is ready, without letting time pass.
    void runUntilIdle() { runFor(Duration::zero()); }

    // Lets time pass until the condition holds, at most for `limit`. Returns true when the condition held. It is
    // checked on the main thread: after each of its jobs, after each step of another thread, and before time moves.
    bool runUntil(const std::function<bool()>& condition, Duration limit);

    // No thread pauses at random from now on.
    void endStandstills();

    // The computer sleeps: the clock jumps by `duration`, and no thread runs meanwhile. Whatever was due in that time
    // is late afterwards. Main thread only.
    void sleepMachine(Duration duration);

    // When a thread stood still by chance or the machine slept, in the order of their beginnings.
    const std::vector<Pause>& pauses() const;

    // A hash of all choices and all jumps of time so far. The same seed and the same program give the same hash.
    std::uint64_t traceHash() const;

    std::uint64_t seed() const;

    // The next random number of the seed's stream. Tests and back ends use it for choices that must replay with the
    // seed.
    std::uint64_t random();

    // For virtual back ends: a condition on which threads wait until another thread notifies them.
    class Signal {
    public:
        virtual ~Signal() = default;

        // Waits for the next notifyAll. Returns false when the deadline passes or the runtime ends first. `what`
        // appears in the deadlock report; it must stay valid during the call.
        virtual bool wait(std::string_view what, std::optional<TimePoint> deadline) = 0;

        // Makes every waiting thread ready. The caller keeps the baton.
        virtual void notifyAll() = 0;
    };
    std::unique_ptr<Signal> makeSignal();

    // A switching point: another thread may run before this returns. Back ends call it where a real system could
    // switch.
    void yield(std::string_view what);

    // Waits until nobody else can go on before time moves. Of several that wait so, the one with the lowest number goes
    // on first, and of equal ones the first. Not on the main thread.
    void rest(std::uint64_t number = 0);

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

    // Public for a runtime that delegates to this one.
    LockHooks* lockHooks() override;
    void runOnMainAndWait(Task task) override;

private:
    class Locks;
    class Background;

    bool drainMain(Duration limit, const std::function<bool()>* condition);

    std::unique_ptr<VirtualScheduler> scheduler;
    std::unique_ptr<VirtualMainQueue> mainQueue;
    std::unique_ptr<Locks> locks;
    std::unique_ptr<Background> delayed;
    const std::uint64_t firstSeed;
};

} // namespace lumbrine
