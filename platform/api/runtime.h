// The only way to time and concurrency. Everything above platform/ asks a Runtime for the time, for sleeps, for queues,
// timers, threads and locks, and so runs unchanged in real time and in virtual time.
//
// The main queue belongs to one thread, the main thread: the thread that owns the event loop. Published state lives
// there. Jobs posted to a queue from one thread run in the order in which that thread posted them.
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

// Jobs one after another, never two at once, on a thread of the runtime's choosing. Destroying a queue drops what has
// not begun and waits for the job that runs; never from one of its own jobs.
class SerialQueue {
public:
    virtual ~SerialQueue() = default;

    virtual void post(Task task) = 0;

    // Not before `delay` has passed; after jobs that became due earlier.
    virtual void postAfter(Duration delay, Task task) = 0;

    virtual std::string_view label() const = 0;
};

// Runs until it is destroyed. Destroying it on the main thread means that the job does not run again.
class RepeatingTimer {
public:
    virtual ~RepeatingTimer() = default;
};

// A thread with a name. Destroying it waits for its end; the owner has told it to end before.
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

    // Blocks the calling thread. Returns at once when the runtime is being shut down. Not while a Mutex is held.
    virtual void sleepFor(Duration duration) = 0;

    // True on the main thread.
    virtual bool onMain() const = 0;

    // Queues a job for the main thread; from any thread, also from the main thread itself.
    virtual void postMain(Task task) = 0;
    virtual void postMainAfter(Duration delay, Task task) = 0;

    // At once when already on the main thread, else posted to it.
    void runOnMain(Task task) {
        if (onMain()) {
            task();
        } else {
            postMain(std::move(task));
        }
    }

    // Runs `function` on the main thread and returns what it returned; the caller waits. Directly on the main thread.
    // While the runtime is being shut down nothing runs and the result is value-initialised, so results must be default
    // constructible. Not while a Mutex is held.
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

    // A job on some thread other than the caller's, beside whatever else runs. It may block and sleep.
    virtual void background(Priority priority, Task task) = 0;
    virtual void backgroundAfter(Duration delay, Task task) = 0;

    virtual std::unique_ptr<SerialQueue> serialQueue(std::string label, Priority priority) = 0;

    // Calls `tick` on the main thread every `interval`, first after one interval. A tick that comes late does not bring
    // the ones it delayed after it. Call on the main thread.
    virtual std::unique_ptr<RepeatingTimer> repeatOnMain(Duration interval, std::function<void()> tick) = 0;

    virtual std::unique_ptr<Thread> startThread(std::string name, Task body) = 0;

protected:
    friend class Mutex;

    // How a Mutex of this runtime is taken, when not by the system's own lock.
    class LockHooks {
    public:
        virtual ~LockHooks() = default;
        virtual void lock(Mutex& mutex) = 0;
        virtual void unlock(Mutex& mutex) = 0;
    };

    virtual LockHooks* lockHooks() { return nullptr; }

    // Called off the main thread only. Returns when `task` has run, or when the runtime is being shut down and it never
    // will.
    virtual void runOnMainAndWait(Task task) = 0;
};

// Which second lock may be taken while a Mutex is held. Only the first kind of the last two may be around the second.
enum class Nesting {
    none,        // the rule
    overBackEnd, // one that keeps messages together on their way into a back end, which may take its own
    inBackEnd,   // a back end's own
};

// A lock that is held for a few lines: never across a sleep, a hop to another queue, a callback or, except for what
// Nesting allows, another lock. In virtual time breaking that rule ends the program with a report.
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
