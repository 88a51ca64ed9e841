#include "model/bank/seek_worker.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <utility>

namespace lumbrine {

namespace {

constexpr Duration linger = seconds(0.06); // at a target: the next one of a wheel or a held button comes that soon
constexpr Duration afterSeekPress = seconds(0.012);

} // namespace

SeekWorker::SeekWorker(const Jobs& jobs, ReceiverState& state, Parts parts)
    : jobs(jobs), state(state), parts(parts), seekLock(jobs.runtime) {}

// ---- Requests

void SeekWorker::seekBank(int target) {
    jobs.runOnMain([this, target] { request(target); });
}

void SeekWorker::request(int target) {
    const PublishedState& published = state.published;
    if (!published.huiConnected) return;
    const BankLayout session{.tracks = static_cast<int>(published.session.size()), .width = published.winW};
    if (session.maxOffset() == 0 || !parts.desk.take(BankUser::seek)) return;
    if (!hireWorker(std::clamp(target, 0, session.maxOffset()))) return;
    jobs.inBackground(Priority::userInitiated, [this] { run(); });
}

bool SeekWorker::hireWorker(int target) {
    const Lock lock(seekLock);
    seekTarget = target;
    return !std::exchange(seekWorkerRunning, true);
}

void SeekWorker::bankMove(int kind) {
    if (kind < 0 || kind > 3) return;
    jobs.runOnMain([this, kind] { move(kind); });
}

void SeekWorker::move(int kind) {
    const PublishedState& published = state.published;
    if (published.shownStrips().size() < published.session.size() && published.bankOffset >= 0) {
        const std::array<int, 4> distances{-1, -published.winW, 1, published.winW};
        return seekBank(published.bankOffset + distances[static_cast<std::size_t>(kind)]);
    }
    parts.desk.tapBank(kind);
    parts.bankMap.resetForBankMove();
}

// ---- The worker

// When this ends no target is left: one that comes later hires another worker.
void SeekWorker::run() {
    const BankLayout session = parts.moves.layout();
    int current = startOffset(); // where the surfaces are by all that was pressed
    std::optional<int> last;     // the target that was pressed for last
    if (current < 0) dismiss();
    for (int corrections = 0; current >= 0;) {
        while (const auto target = wanted(session)) {
            last = target;
            if (*target != current) {
                current = step(current, *target, session);
            } else if (stays(current, session)) {
                break;
            }
        }
        parts.moves.shortQuietWait();
        const int actual = parts.moves.shownOffset();
        const bool arrived = !last || actual < 0 || actual == *last;
        const Lock lock(seekLock);
        if (!seekTarget) {
            if (arrived || corrections == maxCorrections) {
                seekWorkerRunning = false;
                break;
            }
            ++corrections;
            seekTarget = last;
        }
        if (actual >= 0) current = actual;
    }
    jobs.runOnMain([this] { finish(); });
}

int SeekWorker::startOffset() const {
    const int known = jobs.runtime.syncMain([this] { return state.published.bankOffset; });
    if (known >= 0) return known;
    parts.moves.shortQuietWait();
    return parts.moves.shownOffset();
}

void SeekWorker::dismiss() {
    const Lock lock(seekLock);
    seekTarget.reset();
    seekWorkerRunning = false;
}

// The target, within what the session's end allows: the window may have become wider since it was set.
std::optional<int> SeekWorker::wanted(BankLayout session) {
    const Lock lock(seekLock);
    if (!seekTarget) return std::nullopt;
    return std::min(*seekTarget, session.maxOffset());
}

// Waits at the target. True when no other one has come, and none is left then.
bool SeekWorker::stays(int target, BankLayout session) {
    jobs.runtime.sleepFor(linger);
    const Lock lock(seekLock);
    if (seekTarget && std::min(*seekTarget, session.maxOffset()) != target) return false;
    seekTarget.reset();
    return true;
}

int SeekWorker::step(int current, int target, BankLayout session) {
    const BankStep step = nextBankStep(current, target, session);
    parts.moves.press(step.port);
    jobs.runOnMain([this, offset = step.predicted] { showProgress(offset); });
    if (step.byBank()) {
        parts.moves.shortQuietWait();
    } else {
        jobs.runtime.sleepFor(afterSeekPress);
    }
    return step.predicted;
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
    {
        // Another worker may have been hired since this one ended.
        const Lock lock(seekLock);
        if (!seekWorkerRunning) parts.desk.giveBack();
    }
    parts.bankMap.resetForBankMove();
    parts.bankMap.relocalize();
    parts.mirror.send(occasion::bankView);
    parts.mirror.send(occasion::afterSeek);
    parts.automation.pollAllAutoModes();
}

} // namespace lumbrine
