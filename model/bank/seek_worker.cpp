#include "model/bank/seek_worker.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstdlib>
#include <utility>

namespace lumbrine {

namespace {

constexpr Duration linger = seconds(0.06); // at a target: the next one of a wheel or a held button comes that soon
constexpr Duration afterSeekPress = seconds(0.012);

// A seek goes on while corrections bring the surfaces nearer: presses may get lost.
class Corrections {
public:
    bool another(int from, int target) {
        const int distance = std::abs(target - from);
        if (target == last && distance >= nearest) ++vain;
        nearest = target == last ? std::min(nearest, distance) : distance;
        last = target;
        return vain < SeekWorker::maxVainCorrections;
    }

private:
    int last = -1; // target
    int nearest = 0;
    int vain = 0;
};

} // namespace

SeekWorker::SeekWorker(const Jobs& jobs, ReceiverState& state, Parts parts)
    : jobs(jobs), state(state), parts(parts), seekLock(jobs.runtime) {}

// ---- Requests

void SeekWorker::seekBank(int target, std::optional<Ownership> owner) {
    jobs.runOnMain([this, target, owner] { request(target, owner); });
}

void SeekWorker::request(int target, std::optional<Ownership> owner) {
    const PublishedState& published = state.published;
    if (!published.huiConnected) return parts.drops.tell(command_name::bankMove, DropReason::notConnected);
    const BankLayout session{.tracks = static_cast<int>(published.session.size()), .width = published.winW};
    if (published.session.empty()) return parts.drops.tell(command_name::bankMove, DropReason::positionUnknown);
    if (session.maxOffset() == 0 && published.session.sure) return;
    if (!state.quiet() && published.banksUsedBy != BankUser::seek)
        return parts.drops.tell(command_name::bankMove, DropReason::surfacesBusy);
    if (!hireWorker(std::clamp(target, 0, session.maxOffset()), owner)) return;
    parts.queue.request({
        .kind = DeskJob::Kind::seek,
        .begin = [] { return true; },
        .work = [this] { run(); },
        .end = [this] { finish(); },
    });
}

bool SeekWorker::hireWorker(int target, std::optional<Ownership> owner) {
    const Lock lock(seekLock);
    seekTarget = target;
    seeker = owner;
    return !std::exchange(seekWorkerRunning, true);
}

void SeekWorker::bankMove(int kind, std::optional<Ownership> owner) {
    if (kind < 0 || kind > 3) return;
    jobs.runOnMain([this, kind, owner] { move(kind, owner); });
}

void SeekWorker::move(int kind, std::optional<Ownership> owner) {
    const PublishedState& published = state.published;
    if (published.shownStrips().size() < published.session.size() && published.bankOffset >= 0) {
        const std::array<int, 4> distances{-1, -published.winW, 1, published.winW};
        return request(destination() + distances[static_cast<std::size_t>(kind)], owner);
    }
    if (!state.quiet()) return parts.drops.tell(command_name::bankMove, DropReason::surfacesBusy);
    tap(kind, owner);
}

// Where the surfaces will be, by all that was asked for.
int SeekWorker::destination() {
    const Lock lock(seekLock);
    if (seekTarget) return *seekTarget;
    return seekWorkerRunning && lastTarget ? *lastTarget : state.published.bankOffset;
}

// ---- Keys

void SeekWorker::tap(int kind, std::optional<Ownership> owner) {
    {
        const Lock lock(seekLock);
        if (taps.size() == maxTaps) return parts.drops.tell(command_name::bankMove, DropReason::tooMany);
        taps.push_back({.key = kind, .owner = owner});
    }
    parts.queue.request({
        .kind = DeskJob::Kind::tap,
        .begin =
            [this] {
                parts.bankMap.resetForBankMove();
                return tapsWait(); // unless the job before has pressed them
            },
        .work = [this] { pressTaps(); },
        .end = [] {},
    });
}

void SeekWorker::pressTaps() {
    do {
        while (const auto key = nextTap())
            parts.moves.press(*key);
        parts.moves.awaitEffect([this] { return tapsWait(); });
    } while (tapsWait());
}

bool SeekWorker::tapsWait() {
    const Lock lock(seekLock);
    return !taps.empty();
}

std::optional<int> SeekWorker::nextTap() {
    std::size_t former = 0;
    std::optional<int> key;
    {
        const Lock lock(seekLock);
        former = std::erase_if(taps, [this](const Tap& tap) { return !parts.queue.isWanted(tap.owner); });
        if (!taps.empty()) {
            key = taps.front().key;
            taps.erase(taps.begin());
        }
    }
    if (former > 0) parts.drops.tell(command_name::bankMove, DropReason::ownerChanged);
    return key;
}

// ---- The worker

// When this ends no target is left: one that comes later hires another worker.
void SeekWorker::run() {
    BankLayout session = parts.moves.layout();
    int current = startOffset(); // where the surfaces are by all that was pressed
    Corrections corrections;
    int from = current;    // where this attempt began
    bool hasMoved = false; // in the one before: then its bank buttons may have led elsewhere
    if (current < 0) {
        dismiss();
        parts.drops.tell(command_name::bankMove, DropReason::positionUnknown);
    }
    while (current >= 0) {
        while (const auto target = wanted(session)) {
            if (*target != current) {
                current = step(current, *target, session, hasMoved);
            } else if (stays(current, session)) {
                break;
            }
        }
        int actual = parts.moves.arrival(current, [this] { return isAskedForMore(); });
        if (actual < 0 && !isAskedForMore()) actual = parts.moves.recognizedOffset();
        const Lock lock(seekLock);
        const bool arrived = !lastTarget || actual < 0 || actual == *lastTarget;
        if (!seekTarget) {
            if (arrived || !corrections.another(actual, *lastTarget)) {
                endWork();
                break;
            }
            seekTarget = lastTarget;
        }
        if (actual >= 0) current = actual;
        hasMoved = std::exchange(from, current) != current;
    }
    parts.moves.awaitLastPress(current, [this] { return isAskedForMore(); });
}

int SeekWorker::startOffset() const {
    const int known = jobs.runtime.syncMain([this] { return state.published.bankOffset; });
    if (known >= 0) return known;
    parts.moves.shortQuietWait();
    return parts.moves.recognizedOffset(BankMap::overwritten);
}

void SeekWorker::dismiss() {
    const Lock lock(seekLock);
    endWork();
}

void SeekWorker::endWork() {
    seekTarget.reset();
    lastTarget.reset();
    seekWorkerRunning = false;
}

// The target, within what the session's end allows: the window may have become wider since it was set. None any more
// when the client that asked for it has lost control.
std::optional<int> SeekWorker::wanted(BankLayout session) {
    const Lock lock(seekLock);
    if (!parts.queue.isWanted(seeker)) {
        seekTarget.reset();
        lastTarget.reset();
    }
    if (!seekTarget) return std::nullopt;
    lastTarget = std::min(*seekTarget, session.maxOffset());
    return lastTarget;
}

// Waits at the target. True when no other one has come, and none is left then.
bool SeekWorker::stays(int target, BankLayout session) {
    jobs.runtime.sleepFor(linger);
    const Lock lock(seekLock);
    if (seekTarget && std::min(*seekTarget, session.maxOffset()) != target) return false;
    seekTarget.reset();
    return true;
}

bool SeekWorker::isAskedForMore() {
    const Lock lock(seekLock);
    return seekTarget.has_value();
}

int SeekWorker::step(int current, int target, BankLayout& session, bool isCorrection) {
    const BankStep step = parts.moves.stepTowards(target, current, session, isCorrection);
    jobs.runOnMain([this, offset = step.predicted] { showProgress(offset); });
    if (step.byBank()) {
        parts.moves.shortQuietWait();
    } else {
        jobs.runtime.sleepFor(afterSeekPress);
    }
    return parts.moves.ledTo(current, step, session);
}

// ---- What the client sees of it

void SeekWorker::showProgress(int offset) {
    assert(jobs.runtime.onMain());
    state.published.bankOffset = offset;
    state.published.changed();
    parts.mirror.send(occasion::bankView);
}

void SeekWorker::finish() {
    assert(jobs.runtime.onMain());
    parts.capture.allShown();
    parts.bankMap.resetForBankMove();
    parts.bankMap.relocalize();
    parts.mirror.send(occasion::bankView);
    parts.mirror.send(occasion::afterSeek);
    parts.automation.pollAllAutoModes();
}

} // namespace lumbrine
