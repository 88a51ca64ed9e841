// Who runs in virtual time, and when: real threads that take turns, a seed that chooses, a clock that jumps.
//
// Exactly one thread holds the baton; only that one may call anything here, so nothing needs a lock. A program that
// calls from any other thread is ended with a report.
#pragma once

#include "base/deadline_heap.h"
#include "platform/api/task.h"
#include "platform/api/time.h"
#include "platform/virtual/baton.h"
#include "platform/virtual/standstills.h"
#include "platform/virtual/virtual_runtime.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace lumbrine {

class Mutex;

// One thread of the virtual world: the main thread, or a worker that runs one job after another.
struct VirtualThread {
    std::uint64_t number = 0; // 0 is the main thread
    std::string name;
    std::thread::id id;
    std::thread thread;
    Baton baton;

    enum class State { free, ready, running, blocked, idling } state = State::free;
    std::string_view waitsFor; // the point where it gave the baton away; valid while it has not got it back
    std::optional<TimePoint> deadline;
    bool interruptible = false;
    bool woken = false;
    TimePoint since; // when it began to wait

    Task job;
    bool mustRun = false; // also when the world ends before the job began
    std::vector<const Mutex*> holds;
    Standstills::Pace pace;
};

class VirtualScheduler {
public:
    // Where jobs go when their time has come. `accept` is called by whichever thread moved the clock and hands nothing
    // on.
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
    TimePoint after(Duration delay) const; // the end of time when that would be beyond it
    bool stopping() const { return stopped; }
    std::uint64_t traceHash() const { return hash; }
    std::uint64_t random();

    // The thread that holds the baton, which is the calling one.
    VirtualThread& self() const;
    VirtualThread& mainThread() { return main; }
    bool onMain() const { return &self() == &main; }

    // Lets the seed choose among the calling thread and all that are ready, or goes on when it is patient.
    void yield(std::string_view what);

    // Waits for wake(), until the deadline, or until the world ends. True after a wake().
    bool wait(std::string_view what, std::optional<TimePoint> deadline);

    // Waits for wake(), whatever happens.
    void waitUninterrupted(std::string_view what);

    // Makes a waiting thread ready; hands nothing on. A thread that does not wait is left alone.
    void wake(VirtualThread& thread);

    // A job on a worker; hands nothing on. Dropped when the world has ended or ends before it began, unless it must
    // run.
    void launch(std::string_view name, Task job, bool mustRun);

    // Hands a job to `sink` at that time. Jobs `forMain` move the clock only while the main thread idles.
    void schedule(TimePoint due, Sink& sink, Task job, bool forMain);

    // Drops what is scheduled for that sink.
    void forget(const Sink& sink);

    // The main thread has nothing to do. Returns true when it was woken, or when it is `watching` and another thread
    // has run since; false, with the clock at `end`, when nothing is left that is due until then.
    bool idle(TimePoint end, bool watching);

    // While this lives the main thread runs jobs of its queue, and may stand still by chance; what a test does between
    // two runs is never held up.
    class MainAtWork {
    public:
        explicit MainAtWork(VirtualScheduler& virtualScheduler)
            : scheduler(virtualScheduler), before(std::exchange(virtualScheduler.mainWorks, true)) {}
        ~MainAtWork() { scheduler.mainWorks = before; }
        MainAtWork(const MainAtWork&) = delete;
        MainAtWork& operator=(const MainAtWork&) = delete;

    private:
        VirtualScheduler& scheduler;
        const bool before;
    };

    void endStandstills();

    // The clock goes on by `duration` at once. What became due meanwhile is due now.
    void jump(Duration duration);

    // The main thread has asked for time to pass: steps are counted from here.
    void resetSteps() { steps = 0; }

    // Ends the program when there are too many within one instant.
    void countStep(const VirtualThread& thread);

    // Ends the program when the calling thread holds a Mutex.
    void expectNoMutexHeld(std::string_view action) const;

    // Ends the program with a report about what went wrong and all threads.
    [[noreturn]] void fail(std::string_view problem) const;

    // The world ends: all that waits is woken, all that is scheduled is dropped. From the main thread.
    void stop();

    // After stop: lets the jobs that have begun run to their ends and joins every thread.
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
    std::uint64_t choices;
    std::uint64_t draws;
    Standstills standstills;
    Standstills mainStandstills;
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

    DeadlineHeap<TimePoint, Scheduled> scheduled;
    DeadlineHeap<TimePoint, Scheduled> scheduledForMain;

    TimePoint idleEnd{};
    bool watching = false;
    bool looked = true; // the watching main thread has seen the last step of the others
    bool allDue = false;
};

} // namespace lumbrine
