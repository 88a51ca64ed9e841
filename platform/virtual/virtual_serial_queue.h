// Serial queues and named threads of virtual time.
#pragma once

#include "base/ring_queue.h"
#include "platform/api/runtime.h"
#include "platform/virtual/virtual_scheduler.h"

#include <memory>
#include <string>
#include <vector>

namespace lumbrine {

class VirtualSerialQueue final : public SerialQueue, private VirtualScheduler::Sink {
public:
    VirtualSerialQueue(VirtualScheduler& scheduler, std::string name);
    ~VirtualSerialQueue() override;

    void post(Task task) override;
    void postAfter(Duration delay, Task task) override;
    std::string_view label() const override { return name; }

private:
    void accept(Task task) override;
    void runAll();

    VirtualScheduler& scheduler;
    const std::string name;
    RingQueue<Task> jobs;
    VirtualThread* runner = nullptr; // the worker while it runs jobs of this queue
    bool launched = false;
    std::vector<VirtualThread*> waitingForTheEnd;
};

class VirtualNamedThread final : public Thread {
public:
    VirtualNamedThread(VirtualScheduler& scheduler, const std::string& name, Task body);
    ~VirtualNamedThread() override;

private:
    struct Course {
        Task body;
        bool ended = false;
        VirtualThread* waiting = nullptr;
    };

    VirtualScheduler& scheduler;
    std::shared_ptr<Course> course;
};

} // namespace lumbrine
