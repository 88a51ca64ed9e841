#include "model/bank/seek_worker.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace lumbrine {

namespace {

constexpr Duration linger = seconds(0.06); // at a target, for another one to come
constexpr Duration afterSeekPress = seconds(0.012);

} // namespace

SeekWorker::SeekWorker(const Jobs& modelJobs, ReceiverState& receiverState, Parts otherParts)
    : jobs(modelJobs), state(receiverState), parts(otherParts), seekLock(modelJobs.runtime) {}

void SeekWorker::seekBank(int target) {
    jobs.runOnMain([this, target] { request(target); });
}

void SeekWorker::request(int target) {
    assert(jobs.runtime.onMain());
    const PublishedState& published = state.published;
    if (!published.huiConnected || published.calibrating || state.bank.groupApplying) return;
    const BankLayout session{.tracks = static_cast<int>(published.trackMap.size()), .width = published.winW};
    if (session.maxOffset() == 0) return;
    if (!hireWorker(std::clamp(target, 0, session.maxOffset()))) return;
    state.bank.seeking = true;
    jobs.inBackground(Priority::userInitiated, [this] { run(); });
}

bool SeekWorker::hireWorker(int target) {
    const Lock lock(seekLock);
    seekTarget = target;
    return !std::exchange(seekWorkerRunning, true);
}

void SeekWorker::run() {
    const BankLayout session = parts.moves.layout();
    Drive drive{.current = startOffset(), .last = std::nullopt};
    if (drive.current < 0) {
        dropTarget();
    } else {
        do
            travel(drive, session);
        while (goesOn(drive));
    }
    jobs.runOnMain([this] { finish(); });
}

int SeekWorker::startOffset() const {
    const int known = jobs.runtime.syncMain([this] { return state.published.bankOffset; });
    if (known >= 0) return known;
    parts.moves.shortQuietWait();
    return parts.moves.shownOffset();
}

void SeekWorker::travel(Drive& drive, BankLayout session) {
    while (const auto target = nextTarget(drive, session)) {
        drive.last = target;
        step(drive, *target, session);
    }
}

// The target to press for; nothing when there is none, or when the one that was there has been reached and stays.
std::optional<int> SeekWorker::nextTarget(Drive& drive, BankLayout session) {
    // The window may have become wider since the target was set.
    const auto reachable = [session](int target) { return std::min(target, session.maxOffset()); };
    {
        const Lock lock(seekLock);
        if (!seekTarget) return std::nullopt;
        if (reachable(*seekTarget) != drive.current) return reachable(*seekTarget);
    }
    drive.last = drive.current;
    jobs.runtime.sleepFor(linger);
    const Lock lock(seekLock);
    if (seekTarget && reachable(*seekTarget) != drive.current) return reachable(*seekTarget);
    seekTarget.reset();
    return std::nullopt;
}

void SeekWorker::step(Drive& drive, int target, BankLayout session) {
    const BankStep step = nextBankStep(drive.current, target, session);
    parts.moves.press(step.port);
    drive.current = step.predicted;
    jobs.runOnMain([this, offset = step.predicted] { showProgress(offset); });
    if (step.byBank()) {
        parts.moves.shortQuietWait();
    } else {
        jobs.runtime.sleepFor(afterSeekPress);
    }
}

// Looks at the displays. When this ends the work, no target is left behind: one that comes later hires another worker.
bool SeekWorker::goesOn(Drive& drive) {
    parts.moves.shortQuietWait();
    const int actual = parts.moves.shownOffset();
    const Lock lock(seekLock);
    if (!seekTarget) {
        const bool arrived = !drive.last || actual < 0 || actual == *drive.last;
        if (arrived || drive.corrections == maxCorrections) {
            seekWorkerRunning = false;
            return false;
        }
        ++drive.corrections;
        seekTarget = drive.last;
    }
    if (actual >= 0) drive.current = actual;
    return true;
}

void SeekWorker::dropTarget() {
    const Lock lock(seekLock);
    seekTarget.reset();
    seekWorkerRunning = false;
}

void SeekWorker::showProgress(int offset) {
    assert(jobs.runtime.onMain());
    state.published.bankOffset = offset;
    state.published.changed();
    parts.mirror.sendBankView();
}

void SeekWorker::finish() {
    assert(jobs.runtime.onMain());
    {
        // Another worker may have been hired since this one ended.
        const Lock lock(seekLock);
        state.bank.seeking = seekWorkerRunning;
    }
    parts.bankMap.resetForBankMove();
    parts.bankMap.relocalize();
    parts.mirror.sendBankView();
    parts.mirror.sendShownTrackNames();
    parts.mirror.sendAllSwitches();
    parts.mirror.sendShownFaders();
    parts.mirror.sendAllPans();
    parts.mirror.sendSelectsToClient();
    parts.mirror.sendAllAutoModes();
    parts.automation.pollAllAutoModes();
}

} // namespace lumbrine
