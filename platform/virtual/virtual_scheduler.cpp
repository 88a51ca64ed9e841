#include "platform/virtual/virtual_scheduler.h"

#include "platform/virtual/split_mix.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace lumbrine {

using State = VirtualThread::State;

namespace {

// No test lets the main thread wait longer than this on purpose, so a longer wait counts as a hang. Without this limit,
// periodic jobs of other threads would keep time moving for ever and hide it.
constexpr Duration longestMainWait = std::chrono::hours(1);

} // namespace

VirtualScheduler::VirtualScheduler(const VirtualRuntime::Options& options)
    : seed(options.seed), stepLimit(options.stepLimit), patience(options.patience),
      inOrder(options.turns != VirtualRuntime::Options::Turns::drawn),
      mainIsLast(options.turns == VirtualRuntime::Options::Turns::mainLast), choices(options.seed),
      draws(~options.seed), standstills(options.seed ^ 1, options.standstill),
      mainStandstills(options.seed ^ 2, options.mainStandstill) {
    main.name = "main";
    main.turn.emplace();
    main.state = State::running;
    mix(seed);
}

VirtualScheduler::~VirtualScheduler() = default;

TimePoint VirtualScheduler::after(Duration delay) const {
    if (delay <= Duration::zero()) return time;
    return delay > TimePoint::max() - time ? TimePoint::max() : time + delay;
}

void VirtualScheduler::mix(std::uint64_t number) {
    hash = (hash ^ number) * 0x100000001b3;
    hash ^= hash >> 29;
}

std::uint64_t VirtualScheduler::random() {
    const std::uint64_t value = nextSplitMix(draws);
    mix(value);
    return value;
}

VirtualThread& VirtualScheduler::self() const {
    if (!running->turn->onItsThread()) fail("a thread that is none of the runtime's, or not in its turn, called");
    return *running;
}

void VirtualScheduler::makeReady(VirtualThread& thread) {
    thread.state = State::ready;
    ready.push_back(&thread);
}

void VirtualScheduler::wake(VirtualThread& thread) {
    if (thread.state != State::blocked && thread.state != State::idling) return;
    if (thread.deadline) std::erase(sleepers, &thread);
    thread.woken = true;
    makeReady(thread);
}

void VirtualScheduler::yield(std::string_view what) {
    VirtualThread& thread = self();
    thread.waitsFor = what;
    if (standsStill(thread)) return;
    if (ready.empty() || inOrder || (patience > 1 && nextSplitMix(choices) % patience != 0)) {
        mix(thread.number);
        // The main thread is not counted: a test may do very much between two runs without being a livelock.
        if (&thread != &main) countStep(thread);
        return;
    }
    makeReady(thread);
    passOn(thread);
}

// Makes the thread pause if a pause is due. Returns true when it has paused.
bool VirtualScheduler::standsStill(VirtualThread& thread) {
    if (stopped || (&thread == &main && !mainWorks)) return false;
    const auto length = (&thread == &main ? mainStandstills : standstills).at(time, thread.name, thread.pace);
    if (!length) return false;
    seenPauses.push_back({time, after(*length)});
    block(thread, thread.waitsFor, after(*length), false);
    return true;
}

void VirtualScheduler::endStandstills() {
    standstills.end();
    mainStandstills.end();
}

void VirtualScheduler::jump(Duration duration) {
    seenPauses.push_back({time, after(duration)});
    time = after(duration);
    mix(static_cast<std::uint64_t>(time.time_since_epoch().count()));
    steps = 0;
}

bool VirtualScheduler::wait(std::string_view what, std::optional<TimePoint> deadline) {
    VirtualThread& thread = self();
    if (!stopped) return block(thread, what, deadline, true);
    yield(what);
    return false;
}

void VirtualScheduler::waitUninterrupted(std::string_view what) {
    block(self(), what, std::nullopt, false);
}

void VirtualScheduler::rest(std::uint64_t number) {
    VirtualThread& thread = self();
    if (&thread == &main) fail("the main thread rests");
    resting.emplace_back(number, &thread);
    waitUninterrupted("everybody else's rest");
}

bool VirtualScheduler::wakeResting() {
    if (resting.empty()) return false;
    const auto first = std::ranges::min_element(resting, {}, &std::pair<std::uint64_t, VirtualThread*>::first);
    makeReady(*first->second);
    resting.erase(first);
    return true;
}

bool VirtualScheduler::block(VirtualThread& thread, std::string_view what, std::optional<TimePoint> deadline,
                             bool interruptible) {
    thread.state = State::blocked;
    thread.waitsFor = what;
    thread.deadline = deadline;
    thread.interruptible = interruptible;
    thread.woken = false;
    thread.since = time;
    if (deadline) sleepers.push_back(&thread);
    passOn(thread);
    return thread.woken;
}

bool VirtualScheduler::idle(TimePoint end, bool watchingOthers) {
    main.state = State::idling;
    main.waitsFor = "something to do";
    main.deadline.reset();
    main.woken = false;
    idleEnd = end;
    watching = watchingOthers;
    looked = true;
    allDue = false;
    passOn(main);
    watching = false;
    return !allDue;
}

// Precondition: the caller has set its own `state` (ready, blocked, idling or free).
void VirtualScheduler::passOn(VirtualThread& from) {
    VirtualThread& to = choose();
    to.state = State::running;
    running = &to;
    if (&to == &from) return;
    from.turn->passTo(*to.turn);
}

VirtualThread& VirtualScheduler::choose() {
    for (;;) {
        // A watching main thread checks its condition after each step of another thread.
        if (watching && !looked && main.state == State::idling) return main;
        if (!ready.empty()) {
            VirtualThread& chosen = takeReady();
            mix(chosen.number);
            countStep(chosen);
            if (&chosen != &main) looked = false;
            return chosen;
        }
        if (wakeResting() || moveClock()) continue;
        if (main.state != State::idling) fail("deadlock: every thread waits and nothing is due");
        time = std::max(time, idleEnd);
        mix(static_cast<std::uint64_t>(time.time_since_epoch().count()));
        allDue = true;
        return main;
    }
}

VirtualThread& VirtualScheduler::takeReady() {
    const std::size_t index = inOrder ? nextInOrder() : ready.size() == 1 ? 0 : nextSplitMix(choices) % ready.size();
    VirtualThread& taken = *ready[index];
    if (inOrder) {
        ready.erase(ready.begin() + static_cast<std::ptrdiff_t>(index));
    } else {
        ready[index] = ready.back();
        ready.pop_back();
    }
    return taken;
}

std::size_t VirtualScheduler::nextInOrder() const {
    return mainIsLast && ready.size() > 1 && ready.front() == &main ? 1 : 0;
}

void VirtualScheduler::countStep(const VirtualThread& thread) {
    if (++steps > stepLimit)
        fail("livelock: " + std::to_string(stepLimit) + " steps and no time has passed; the last was of " +
             thread.name);
}

std::optional<TimePoint> VirtualScheduler::nextDeadline() const {
    std::optional<TimePoint> soonest = scheduled.nextDue();
    const auto consider = [&](std::optional<TimePoint> due) {
        if (due && (!soonest || *due < *soonest)) soonest = due;
    };
    for (const VirtualThread* sleeper : sleepers)
        consider(sleeper->deadline);
    if (main.state == State::idling) consider(scheduledForMain.nextDue());
    return soonest;
}

// Moves the clock to the next deadline and makes everything ready that is due. Returns false when there is no deadline,
// or none before the time at which the idle main thread wants to go on.
bool VirtualScheduler::moveClock() {
    const auto deadline = nextDeadline();
    if (!deadline || (main.state == State::idling && *deadline > idleEnd)) return false;
    if (*deadline > time) steps = 0;
    time = std::max(time, *deadline);
    mix(static_cast<std::uint64_t>(time.time_since_epoch().count()));
    if (main.state == State::blocked && !main.deadline && time - main.since > longestMainWait)
        fail("the main thread waits for ever");

    for (std::size_t i = 0; i < sleepers.size();) {
        if (*sleepers[i]->deadline > time) {
            ++i;
            continue;
        }
        makeReady(*sleepers[i]);
        sleepers.erase(sleepers.begin() + static_cast<std::ptrdiff_t>(i));
    }
    for (auto* heap : {&scheduledForMain, &scheduled})
        while (auto due = heap->popDue(time))
            due->sink->accept(std::move(due->job));
    return true;
}

void VirtualScheduler::schedule(TimePoint due, Sink& sink, Task job, bool forMain) {
    if (!stopped) (forMain ? scheduledForMain : scheduled).push(due, Scheduled{&sink, std::move(job)});
}

void VirtualScheduler::forget(const Sink& sink) {
    scheduled.takeIf([&](const Scheduled& item) { return item.sink == &sink; });
}

void VirtualScheduler::launch(std::string_view name, Task job, bool mustRun) {
    if (stopped && !mustRun) return;
    const bool fresh = freeWorkers.empty();
    if (fresh) {
        workers.push_back(std::make_unique<VirtualThread>());
        workers.back()->number = workers.size();
        freeWorkers.push_back(workers.back().get());
    }
    VirtualThread& worker = *freeWorkers.back();
    freeWorkers.pop_back();
    if (name.empty()) {
        worker.name = "background " + std::to_string(worker.number);
    } else {
        worker.name = name;
    }
    worker.job = std::move(job);
    worker.mustRun = mustRun;
    worker.waitsFor = "its beginning";
    makeReady(worker);
    if (fresh) worker.turn.emplace([this, &worker] { work(worker); });
}

void VirtualScheduler::work(VirtualThread& worker) {
    while (worker.job) {
        if (!stopped || worker.mustRun) worker.job();
        expectNoMutexHeld("ends");
        worker.job = Task{};
        worker.state = State::free;
        freeWorkers.push_back(&worker);
        if (stopped && freeWorkers.size() == workers.size()) wake(main); // it waits in `join`
        passOn(worker);
    }
}

void VirtualScheduler::stop() {
    if (!onMain()) fail("the runtime is destroyed on a thread that is not the main thread");
    expectNoMutexHeld("destroys the runtime");
    stopped = true;
    steps = 0;
    for (const auto& worker : workers) {
        if (worker->state != State::blocked || !worker->interruptible) continue;
        wake(*worker);
        worker->woken = false; // it was stopped, not woken: its wait returns false
    }
    const auto everything = [](const Scheduled&) { return true; };
    scheduled.takeIf(everything);
    scheduledForMain.takeIf(everything);
}

void VirtualScheduler::join() {
    if (freeWorkers.size() != workers.size()) waitUninterrupted("the end of all jobs");
    for (const auto& worker : workers)
        main.turn->letEnd(*worker->turn); // it has no job, so its loop ends
}

void VirtualScheduler::expectNoMutexHeld(std::string_view action) const {
    const VirtualThread& thread = self();
    if (!thread.holds.empty()) fail(thread.name + " " + std::string(action) + " while it holds a Mutex");
}

std::string VirtualScheduler::describe(const VirtualThread& thread) const {
    std::string text = thread.name;
    switch (thread.state) {
    case State::free:
        return {};
    case State::running:
        text += ": runs";
        break;
    case State::ready:
        text += ": ready, after " + std::string(thread.waitsFor);
        break;
    case State::idling:
        text += ": has nothing to do";
        break;
    case State::blocked:
        text += ": waits for " + std::string(thread.waitsFor);
        break;
    }
    if (thread.state == State::blocked && thread.deadline)
        text += " until " + std::to_string(inSeconds(thread.deadline->time_since_epoch())) + " s";
    if (!thread.holds.empty()) text += ", holds a Mutex";
    return "  " + text + "\n";
}

void VirtualScheduler::fail(std::string_view problem) const {
    std::string report = "virtual time: " + std::string(problem) + "\n  at " +
                         std::to_string(inSeconds(time.time_since_epoch())) + " s, seed " + std::to_string(seed) + "\n";
    report += describe(main);
    for (const auto& worker : workers)
        report += describe(*worker);
    std::fputs(report.c_str(), stderr);
    std::fflush(stderr);
    std::abort();
}

} // namespace lumbrine
