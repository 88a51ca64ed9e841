// The seam to time and concurrency. Everything above platform/ gets its time, sleeps, queues, timers, threads and locks
// from a Runtime, and therefore runs unchanged in real time and in virtual time.
//
// The main queue runs its jobs on the main thread, the thread of the event loop. Published state may only be touched
// there. Jobs that one thread posts to a queue run in the order in which it posted them.
#pragma once

#include "platform/api/task.h"
#include "platform/api/thread_annotations.h"
#include "platform/api/time.h"

#include <cstdlib>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace lumbrine {

class Mutex;

enum class Priority { utility, normal, userInitiated };

// Runs jobs one after another, never two at once, on a thread that the runtime chooses. The destructor drops the jobs
// that have not begun and waits for the one that runs, so a job must never destroy its own queue.
class SerialQueue {
public:
    virtual ~SerialQueue() = default;

    virtual void post(Task task) = 0;

    // Runs the job when `delay` has passed, after the jobs that became due earlier.
    virtual void postAfter(Duration delay, Task task) = 0;

    virtual std::string_view label() const = 0;
};

// Runs until it is destroyed. When it is destroyed on the main thread, no tick follows.
class RepeatingTimer {
public:
    virtual ~RepeatingTimer() = default;
};

// A thread with a name. The destructor waits for the thread to end, so its owner first makes the body return.
class Thread {
public:
    virtual ~Thread() = default;
};

class Runtime {
public:
    Runtime() = default;
    virtual ~Runtime() = default;
    Runtime(const Runtime&) = delete;
    Runtime& operator=(const Runtime&) = delete;

    virtual TimePoint now() const = 0;

    // Blocks the calling thread. Returns early when the runtime is shut down. Never call it while holding a Mutex.
    virtual void sleepFor(Duration duration) = 0;

    // True on the main thread.
    virtual bool onMain() const = 0;

    // Queues a job for the main thread. Any thread, the main thread included.
    virtual void postMain(Task task) = 0;
    virtual void postMainAfter(Duration delay, Task task) = 0;

    // On the main thread, runs the job at once; on any other thread, posts it.
    void runOnMain(Task task) {
        if (onMain()) {
            task();
        } else {
            postMain(std::move(task));
        }
    }

    // Runs `function` on the main thread, waits for it and returns its result. A caller on the main thread runs it
    // directly. When the runtime shuts down first, `function` does not run and the result is value-initialised, so
    // results must be default constructible. Never call it while holding a Mutex.
    template <typename Function>
    std::invoke_result_t<Function&> syncMain(Function function) {
        using Result = std::invoke_result_t<Function&>;
        if constexpr (std::is_void_v<Result>) {
            if (onMain()) {
                function();
            } else {
                runOnMainAndWait([&function] { function(); });
            }
        } else {
            if (onMain()) return function();
            Result result{};
            runOnMainAndWait([&function, &result] { result = function(); });
            return result;
        }
    }

    // Runs a job on another thread, concurrently with everything else. The job may block and sleep; where as many as
    // there may be threads do so, further jobs wait in order for the first that ends.
    virtual void background(Priority priority, Task task) = 0;
    virtual void backgroundAfter(Duration delay, Task task) = 0;

    virtual std::unique_ptr<SerialQueue> serialQueue(std::string label, Priority priority) = 0;

    // Calls `tick` on the main thread every `interval`, for the first time after one interval. Ticks that were missed
    // because the main thread was busy are skipped, not made up for. Call on the main thread.
    virtual std::unique_ptr<RepeatingTimer> repeatOnMain(Duration interval, std::function<void()> tick) = 0;

    virtual std::unique_ptr<Thread> startThread(std::string name, Task body) = 0;

protected:
    friend class Mutex;

    // Replaces the system's lock in every Mutex of this runtime. Virtual time uses it.
    class LockHooks {
    public:
        virtual ~LockHooks() = default;
        virtual void lock(Mutex& mutex) = 0;
        virtual void unlock(Mutex& mutex) = 0;
    };

    virtual LockHooks* lockHooks() { return nullptr; }

    // Never called on the main thread. Returns when `task` has run, or when shutdown means that it never will.
    virtual void runOnMainAndWait(Task task) = 0;
};

// Whether a second lock may be taken while a Mutex is held. The one case: an overBackEnd lock may be held while an
// inBackEnd lock is taken.
enum class Nesting {
    none,        // the rule: no second lock
    overBackEnd, // keeps the messages of one action together while it sends them through a back end
    inBackEnd,   // a lock inside a back end
};

// A lock that is held for a few lines only: never across a sleep, a hop to another queue or a callback, and never while
// another lock is taken, except as Nesting allows. In virtual time, a program that breaks this rule ends with a report.
class LUMBRINE_CAPABILITY("mutex") Mutex {
public:
    explicit Mutex(Runtime& runtime, Nesting allowed = Nesting::none) : nesting(allowed), hooks(runtime.lockHooks()) {}
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    void lock() LUMBRINE_ACQUIRE() LUMBRINE_NO_THREAD_SAFETY_ANALYSIS {
        if (hooks != nullptr) {
            hooks->lock(*this);
        } else {
            native.lock();
        }
    }

    void unlock() LUMBRINE_RELEASE() LUMBRINE_NO_THREAD_SAFETY_ANALYSIS {
        if (hooks != nullptr) {
            hooks->unlock(*this);
        } else {
            native.unlock();
        }
    }

    const Nesting nesting;

private:
    Runtime::LockHooks* const hooks;
    std::mutex native;
};

// Holds a Mutex for a scope.
class LUMBRINE_SCOPED_CAPABILITY Lock {
public:
    explicit Lock(Mutex& held) LUMBRINE_ACQUIRE(held) : mutex(held) { mutex.lock(); }
    ~Lock() LUMBRINE_RELEASE() { mutex.unlock(); }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

private:
    Mutex& mutex;
};

} // namespace lumbrine
