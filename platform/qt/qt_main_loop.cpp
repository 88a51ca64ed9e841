#include "platform/qt/qt_main_loop.h"

#include "base/deadline_heap.h"
#include "base/ring_queue.h"
#include "platform/posix/repetition.h"
#include "platform/posix/timed_jobs.h"

#include <QBasicTimer>
#include <QCoreApplication>
#include <QEvent>
#include <QTimerEvent>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>
#include <utility>

namespace lumbrine {

// Belongs to the main thread. One Qt event announces any number of new jobs.
class QtMainLoop::Jobs final : public QObject {
public:
    void post(Task job) {
        const std::lock_guard lock(mutex);
        ready.push(std::move(job));
        wake();
    }

    void postAt(TimePoint due, Task job) {
        const std::lock_guard lock(mutex);
        const auto soonest = delayed.nextDue();
        delayed.push(due, std::move(job));
        if (!soonest || due < *soonest) wake();
    }

    void stop() {
        stopped = true;
        const std::lock_guard lock(mutex);
        wake();
    }

    bool event(QEvent* event) override {
        if (event->type() != QEvent::User && event->type() != QEvent::Timer) return QObject::event(event);
        runReady();
        return true;
    }

    const std::thread::id mainThread = std::this_thread::get_id();
    std::atomic<bool> stopped{false};

private:
    void wake() {
        if (!std::exchange(woken, true)) QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    }

    // Runs only the jobs that are ready at the start, so that Qt's own events get their turn between two rounds.
    void runReady() {
        std::unique_lock lock(mutex);
        woken = false;
        while (auto due = delayed.popDue(TimedJobs::now()))
            ready.push(std::move(*due));
        for (std::size_t left = ready.size(); left > 0 && !ready.empty() && !stopped; --left) {
            Task job = ready.pop();
            lock.unlock();
            job();
            job = Task{};
            lock.lock();
        }
        if (stopped) {
            lock.unlock();
            QCoreApplication::exit();
            return;
        }
        if (!ready.empty()) wake();
        waitForNext();
    }

    void waitForNext() {
        const auto due = delayed.nextDue();
        if (!due) return timer.stop();
        const auto wait = std::chrono::ceil<std::chrono::milliseconds>(*due - TimedJobs::now()).count();
        constexpr std::int64_t longest = 3'600'000; // an hour in milliseconds: Qt's intervals are ints
        timer.start(static_cast<int>(std::clamp(wait, std::int64_t{0}, longest)), Qt::PreciseTimer, this);
    }

    std::mutex mutex;
    RingQueue<Task> ready;
    DeadlineHeap<TimePoint, Task> delayed;
    bool woken = false;
    QBasicTimer timer;
};

QtMainLoop::QtMainLoop() : jobs(std::make_unique<Jobs>()) {}

QtMainLoop::~QtMainLoop() = default;

void QtMainLoop::run() {
    if (!jobs->stopped) QCoreApplication::exec();
}

bool QtMainLoop::onMain() const {
    return std::this_thread::get_id() == jobs->mainThread;
}

void QtMainLoop::post(Task task) {
    jobs->post(std::move(task));
}

void QtMainLoop::postAfter(Duration delay, Task task) {
    if (delay <= Duration::zero()) return post(std::move(task));
    jobs->postAt(TimedJobs::after(delay), std::move(task));
}

std::unique_ptr<RepeatingTimer> QtMainLoop::repeat(Duration interval, std::function<void()> tick) {
    return repeatWith([this](TimePoint due, Task job) { jobs->postAt(due, std::move(job)); }, interval,
                      std::move(tick));
}

void QtMainLoop::stop() {
    jobs->stop();
}

} // namespace lumbrine
