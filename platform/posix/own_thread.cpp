#include "platform/posix/own_thread.h"

#include <utility>

namespace lumbrine {

OwnThread::OwnThread(std::string name, Task body)
    : thread([threadName = std::move(name), job = std::move(body)]() mutable {
          nameThisThread(threadName);
          setUrgency(Urgency::userInteractive);
          job();
          job = Task{}; // what the body captured is destroyed on this thread, before it can be joined
      }) {}

OwnThread::~OwnThread() {
    if (thread.get_id() == std::this_thread::get_id()) {
        thread.detach(); // a thread cannot join itself
    } else {
        thread.join();
    }
}

OwnThreadQueue::OwnThreadQueue(std::string name, Urgency urgency, const std::atomic<bool>& stopping)
    : name(std::move(name)), jobs(&stopping), thread([this, urgency] {
          setUrgency(urgency);
          nameThisThread(std::string_view(this->name).substr(this->name.rfind('.') + 1));
          jobs.run();
      }) {}

OwnThreadQueue::~OwnThreadQueue() {
    jobs.stop();
    thread.join();
}

void OwnThreadQueue::post(Task task) {
    jobs.post(std::move(task));
}

void OwnThreadQueue::postAfter(Duration delay, Task task) {
    if (delay <= Duration::zero()) return post(std::move(task));
    jobs.postAt(TimedJobs::after(delay), std::move(task));
}

} // namespace lumbrine
