// The scheduler of virtual time: threads that take turns, a seed that chooses among them, and a clock that jumps.
//
// Exactly one thread holds the baton, and only that thread may call functions of the scheduler. Therefore nothing here
// needs a lock. A call from any other thread ends the program with a report.
#pragma once

#include "base/deadline_heap.h"
#include "platform/api/task.h"
#include "platform/api/time.h"
#include "platform/virtual/standstills.h"
#include "platform/virtual/turn.h"
#include "platform/virtual/virtual_runtime.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace lumbrine {

class Mutex;

// One thread of the virtual world: the main thread, or a worker that runs one job after another.
struct VirtualThread {
    std::uint64_t number = 0; // 0 is the main thread
    std::string name;
    std::optional<Turn> turn; // absent until its first job

    enum class State { free, ready, running, blocked, idling } state = State::free;
    std::string_view waitsFor; // where it passed on the baton; valid until it gets the baton back
    std::optional<TimePoint> deadline;
    bool interruptible = false; // `stop` wakes it
    bool woken = false;         // by wake(), not by the deadline or by `stop`
    TimePoint since;            // when it began to wait

    Task job;
    bool mustRun = false; // the job runs even if the scheduler stops before it has begun
    std::vector<const Mutex*> holds;
    Standstills::Pace pace;
};

class VirtualScheduler {
public:
    // Gets scheduled jobs when they are due. `accept` is called on the thread that moved the clock, and must not pass
    // on the baton.
    class Sink {
    public:
        virtual ~Sink() = default;
        virtual void accept(Task task) = 0;
    };

    // The calling thread becomes the main thread.
    explicit VirtualScheduler(const VirtualRuntime::Options& options);
    ~VirtualScheduler();
    VirtualScheduler(const VirtualScheduler&) = delete;
    VirtualScheduler& operator=(const VirtualScheduler&) = delete;

    TimePoint now() const { return time; }
    TimePoint after(Duration delay) const; // now() + delay, clamped to the range of TimePoint
    bool stopping() const { return stopped; }
    std::uint64_t traceHash() const { return hash; }
    std::uint64_t random();

    // The calling thread, which holds the baton.
    VirtualThread& self() const;
    VirtualThread& mainThread() { return main; }
    bool onMain() const { return &self() == &main; }

    // A switching point: the seed chooses among the calling thread and all ready threads, unless the calling thread
    // goes on out of patience (VirtualRuntime::Options).
    void yield(std::string_view what);

    // Waits for wake(), for the deadline or for stop(). Returns true after wake().
    bool wait(std::string_view what, std::optional<TimePoint> deadline);

    // Waits for wake(). Neither a deadline nor stop() ends the wait.
    void waitUninterrupted(std::string_view what);

    // Waits until no other thread is ready: VirtualRuntime::rest.
    void rest(std::uint64_t number);

    // Makes a waiting thread ready; the caller keeps the baton. Does nothing to a thread that does not wait.
    void wake(VirtualThread& thread);

    // Starts a job on a worker thread; the caller keeps the baton. When the scheduler stops before the job has begun,
    // the job is dropped, unless it must run.
    void launch(std::string_view name, Task job, bool mustRun);

    // Passes a job to `sink` at time `due`. Jobs `forMain` move the clock only while the main thread is idle.
    void schedule(TimePoint due, Sink& sink, Task job, bool forMain);

    // Drops the jobs scheduled for this sink.
    void forget(const Sink& sink);

    // Called by the main thread when it has nothing to do. Returns true when it was woken, or when it is `watching` and
    // another thread has run. Returns false, with the clock at `end`, when nothing else is due until then.
    bool idle(TimePoint end, bool watching);

    // While this object lives, the main thread runs jobs of its queue and may pause at random. Code of a test between
    // two runs never pauses.
    class MainAtWork {
    public:
        explicit MainAtWork(VirtualScheduler& scheduler)
            : scheduler(scheduler), before(std::exchange(scheduler.mainWorks, true)) {}
        ~MainAtWork() { scheduler.mainWorks = before; }
        MainAtWork(const MainAtWork&) = delete;
        MainAtWork& operator=(const MainAtWork&) = delete;

    private:
        VirtualScheduler& scheduler;
        const bool before;
    };

    void endStandstills();
    const std::vector<Pause>& pauses() const { return seenPauses; }

    // Moves the clock by `duration`. Jobs and deadlines in between are due now.
    void jump(Duration duration);

    // Restarts the count of steps. The main thread calls it when it lets time pass.
    void resetSteps() { steps = 0; }

    // Counts one step of `thread`. Ends the program when there are too many at one instant.
    void countStep(const VirtualThread& thread);

    // Ends the program when the calling thread holds a Mutex. `action` completes the report "NAME action while ...".
    void expectNoMutexHeld(std::string_view action) const;

    // Ends the program with a report: the problem, and the state of all threads.
    [[noreturn]] void fail(std::string_view problem) const;

    // Begins the end: wakes all interruptible threads and drops all scheduled jobs. Main thread only.
    void stop();

    // After stop: waits until the jobs that have begun are over, then joins every thread.
    void join();

private:
    struct Scheduled {
        Sink* sink;
        Task job;
    };

    bool block(VirtualThread& thread, std::string_view what, std::optional<TimePoint> deadline, bool interruptible);
    bool standsStill(VirtualThread& thread);
    void passOn(VirtualThread& from);
    VirtualThread& choose();
    VirtualThread& takeReady();
    std::size_t nextInOrder() const;
    bool wakeResting();
    void makeReady(VirtualThread& thread);
    bool moveClock();
    std::optional<TimePoint> nextDeadline() const;
    void mix(std::uint64_t number);
    void work(VirtualThread& worker);
    std::string describe(const VirtualThread& thread) const;

    const std::uint64_t seed;
    const std::uint64_t stepLimit;
    const std::uint64_t patience;
    const bool inOrder;
    const bool mainIsLast;
    std::uint64_t choices;
    std::uint64_t draws;
    Standstills standstills;
    Standstills mainStandstills;
    std::vector<Pause> seenPauses;
    std::uint64_t hash = 0xcbf29ce484222325;
    std::uint64_t steps = 0;
    TimePoint time{};
    bool stopped = false;

    VirtualThread main;
    bool mainWorks = false;
    VirtualThread* running = &main;
    std::vector<std::unique_ptr<VirtualThread>> workers;
    std::vector<VirtualThread*> freeWorkers;
    std::vector<VirtualThread*> ready;
    std::vector<VirtualThread*> sleepers; // blocked with a deadline
    std::vector<std::pair<std::uint64_t, VirtualThread*>> resting;

    DeadlineHeap<TimePoint, Scheduled> scheduled;
    DeadlineHeap<TimePoint, Scheduled> scheduledForMain;

    TimePoint idleEnd{};
    bool watching = false;
    bool looked = true;  // the watching main thread has checked since the last step of another thread
    bool allDue = false; // the idle main thread has reached the end of its time
};

} // namespace lumbrine
