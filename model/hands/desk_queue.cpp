#include "model/hands/desk_queue.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace lumbrine {

namespace {

constexpr Duration soon = seconds(2.0); // how old a command may be when it is carried out

std::optional<BankUser> bankUser(DeskJob::Kind kind) {
    switch (kind) {
    case DeskJob::Kind::seek:
        return BankUser::seek;
    case DeskJob::Kind::walk:
        return BankUser::walk;
    case DeskJob::Kind::scan:
        return BankUser::scan;
    case DeskJob::Kind::tap:
    case DeskJob::Kind::mode:
    case DeskJob::Kind::poll:
        break;
    }
    return std::nullopt;
}

bool movesBanks(DeskJob::Kind kind) {
    return kind != DeskJob::Kind::mode && kind != DeskJob::Kind::poll;
}

bool waitsForHands(DeskJob::Kind kind) {
    return kind == DeskJob::Kind::walk || kind == DeskJob::Kind::scan;
}

} // namespace

DeskQueue::DeskQueue(const Jobs& jobs, ReceiverState& state, Surfaces& surfaces, DroppedCommands& drops)
    : jobs(jobs), state(state), surfaces(surfaces), drops(drops),
      thread(jobs.runtime.serialQueue("com.tarnwick.lumbrine.automode", Priority::userInitiated)) {}

// ---- Asking

void DeskQueue::request(DeskJob job) {
    assert(jobs.runtime.onMain());
    const auto same = std::ranges::find_if(
        waiting, [&job](const DeskJob& other) { return other.kind == job.kind && other.subject == job.subject; });
    if (same == waiting.end()) {
        waiting.push_back(std::move(job));
    } else {
        *same = std::move(job);
    }
    consider();
}

void DeskQueue::performLater(HandAct act) {
    assert(jobs.runtime.onMain());
    if (acts.size() == maxActs) return drops.tell(act.name, DropReason::tooMany);
    acts.push_back(std::move(act));
    consider();
}

Duration DeskQueue::patience() const {
    return closed ? HandAct::patience : soon;
}

void DeskQueue::ownerIs(Ownership owner) {
    std::uint64_t before = current;
    while (before < owner.number && !current.compare_exchange_weak(before, owner.number)) {
    }
}

void DeskQueue::newOwner(Ownership owner) {
    assert(jobs.runtime.onMain());
    ownerIs(owner);
    const auto isFormer = [&owner](const std::optional<Ownership>& asker) { return asker && *asker < owner; };
    std::vector<DeskJob> former;
    std::erase_if(waiting, [&](DeskJob& job) {
        if (!isFormer(job.owner)) return false;
        former.push_back(std::move(job));
        return true;
    });
    for (const DeskJob& job : former)
        drop(job, DropReason::ownerChanged);
    dropActs([&](const HandAct& act) { return isFormer(act.asked.owner); }, DropReason::ownerChanged);
}

void DeskQueue::drop(const DeskJob& job, DropReason reason) {
    if (job.owner) drops.tell(job.name, reason);
    job.dropped();
}

// ---- Turns

void DeskQueue::consider() {
    dropOld();
    if (!closed) performActs();
    while (!running) {
        auto job = next();
        if (!job) break;
        running = true; // also for whatever is asked for while it begins
        if (job->begin()) {
            run(std::move(*job));
        } else {
            running = false;
        }
    }
    for (const DeskJob& job : waiting)
        considerAt(mustWait(job) && !running ? jobs.runtime.now() + handsLook : job.until);
    for (const HandAct& act : acts)
        considerAt(closed ? act.asked.at + HandAct::patience : jobs.runtime.now() + handsLook);
}

void DeskQueue::considerAt(TimePoint at) {
    if (at == TimePoint::max() || (nextLook && *nextLook <= at)) return;
    nextLook = at;
    jobs.onMainAfter(at - jobs.runtime.now(), [this, at] {
        if (nextLook != at) return;
        nextLook.reset();
        consider();
    });
}

void DeskQueue::dropOld() {
    const TimePoint now = jobs.runtime.now();
    std::vector<DeskJob> old;
    std::erase_if(waiting, [&](DeskJob& job) {
        if (now < job.until) return false;
        old.push_back(std::move(job));
        return true;
    });
    for (const DeskJob& job : old) {
        const bool held = !running && mustWait(job);
        drop(job, held ? DropReason::faderHeld : DropReason::surfacesBusy);
    }
    dropActs([now](const HandAct& act) { return now >= act.asked.at + HandAct::patience; }, DropReason::surfacesBusy);
}

void DeskQueue::dropActs(const std::function<bool(const HandAct&)>& isDropped, DropReason reason) {
    std::erase_if(acts, [&](const HandAct& act) {
        if (!isDropped(act)) return false;
        drops.tell(act.name, reason);
        return true;
    });
}

bool DeskQueue::mustWait(const DeskJob& job) const {
    return waitsForHands(job.kind) && state.handsOn(jobs.runtime.now());
}

std::optional<DeskJob> DeskQueue::next() {
    auto best = waiting.end();
    for (auto job = waiting.begin(); job != waiting.end(); ++job)
        if (!mustWait(*job) && (best == waiting.end() || job->kind < best->kind)) best = job;
    if (best == waiting.end()) return std::nullopt;
    DeskJob job = std::move(*best);
    waiting.erase(best);
    return job;
}

void DeskQueue::run(DeskJob job) {
    if (movesBanks(job.kind)) closeSurfaces(bankUser(job.kind));
    jobs.onQueue(*thread, [this, job = std::move(job)] {
        job.work();
        jobs.runOnMain([this, job] { over(job); });
    });
}

void DeskQueue::over(const DeskJob& job) {
    running = false;
    if (movesBanks(job.kind)) openSurfaces();
    job.end();
    consider();
}

// ---- The client's hands

void DeskQueue::closeSurfaces(std::optional<BankUser> user) {
    closed = true;
    state.published.banksUsedBy = user;
    ++state.bankMoves;
    surfaces.closeToHands();
    for (StripState& strip : state.published.strips) {
        strip.liftFinger(jobs.runtime.now());
        strip.panSeek.reset();
    }
}

void DeskQueue::openSurfaces() {
    closed = false;
    ++state.bankMoves;
    state.published.banksUsedBy.reset();
    surfaces.openToHands();
}

void DeskQueue::performActs() {
    std::vector<HandAct> left;
    for (HandAct& act : std::exchange(acts, {})) {
        if (const auto strip = state.stripShowing(act.track)) {
            if (!act.perform(*strip)) drops.tell(act.name, DropReason::trackGone);
        } else if (state.published.bankOffset < 0) {
            left.push_back(std::move(act)); // it may become known in time
        } else {
            drops.tell(act.name, DropReason::trackGone);
        }
    }
    acts.insert(acts.begin(), std::make_move_iterator(left.begin()), std::make_move_iterator(left.end()));
}

} // namespace lumbrine
