// What has a system thread of its own: a named thread, a serial queue.
#pragma once

#include "platform/api/runtime.h"
#include "platform/posix/timed_jobs.h"

#include <atomic>
#include <string>
#include <thread>

namespace lumbrine {

class OwnThread final : public Thread {
public:
    // The system shows the first 15 characters of the name.
    OwnThread(std::string name, Task body);

    // On the thread itself, as the last thing that its body does, it waits for nothing.
    ~OwnThread() override;

private:
    std::thread thread;
};

// A queue whose thread bears the last part of the label: "ptsl" for "com.example.ptsl".
class OwnThreadQueue final : public SerialQueue {
public:
    // Begins no job once `stopping` is true; that outlives the queue.
    OwnThreadQueue(std::string queueLabel, const std::atomic<bool>& stopping);
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
