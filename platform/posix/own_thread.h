// A named thread, and a serial queue that owns a thread.
#pragma once

#include "platform/api/runtime.h"
#include "platform/posix/os_thread.h"
#include "platform/posix/timed_jobs.h"

#include <atomic>
#include <string>
#include <thread>

namespace lumbrine {

class OwnThread final : public Thread {
public:
    // The system shows the first 15 characters of the name. The thread has the highest urgency.
    OwnThread(std::string name, Task body);

    // Waits for the thread to end. The body may also destroy its own thread, as its last action; then this does not
    // wait.
    ~OwnThread() override;

private:
    std::thread thread;
};

// A queue with its own thread, named after the last part of the label: "ptsl" for "com.example.ptsl".
class OwnThreadQueue final : public SerialQueue {
public:
    // Once `stopping` is true, no further job begins. `stopping` must outlive the queue.
    OwnThreadQueue(std::string name, Urgency urgency, const std::atomic<bool>& stopping);
    ~OwnThreadQueue() override;

    void post(Task task) override;
    void postAfter(Duration delay, Task task) override;
    std::string_view label() const override { return name; }

private:
    const std::string name;
    TimedJobs jobs;
    std::thread thread;
};

} // namespace lumbrine
