#include "platform/posix/run_loop.h"

#include "platform/api/runtime.h"
#include "platform/posix/repetition.h"

#include <utility>

namespace lumbrine {

RunLoop::RunLoop(TimerOrder order) : mainThread(std::this_thread::get_id()), jobs(nullptr, order) {}

void RunLoop::run() {
    mainThread = std::this_thread::get_id();
    jobs.run();
}

void RunLoop::stop() {
    jobs.stop();
}

bool RunLoop::onMain() const {
    return mainThread.load() == std::this_thread::get_id();
}

void RunLoop::post(Task task) {
    jobs.post(std::move(task));
}

void RunLoop::postAfter(Duration delay, Task task) {
    if (delay <= Duration::zero()) return post(std::move(task));
    jobs.postAt(TimedJobs::after(delay), std::move(task));
}

std::unique_ptr<RepeatingTimer> RunLoop::repeat(Duration interval, std::function<void()> tick) {
    return repeatWith([this](TimePoint due, Task job) { jobs.postAt(due, std::move(job)); }, interval, std::move(tick));
}

} // namespace lumbrine
