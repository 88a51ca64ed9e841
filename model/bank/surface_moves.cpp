#include "model/bank/surface_moves.h"

#include <algorithm>
#include <cassert>
#include <optional>

namespace lumbrine {

namespace {

constexpr Duration quietLimit = seconds(0.45);
constexpr Duration quietPoll = seconds(0.02);
constexpr Duration quietNames = seconds(0.08);
constexpr Duration quietAtLeast = seconds(0.1);

constexpr Duration stillPoll = seconds(0.05);
constexpr Duration recognitionLimit = seconds(1.0);
constexpr Duration windowSample = seconds(0.12);

// Time for Pro Tools to follow a press before the next one: a bank redraws every strip.
constexpr Duration afterBankPress = seconds(0.12);
constexpr Duration afterChannelPress = seconds(0.075);

constexpr Duration arrivedStill = seconds(0.15);
constexpr Duration arrivedLimit = seconds(0.8);
constexpr Duration beforeNextAttempt = seconds(0.1);

// Enough polls to fill the time. Counted, because the clock may stand still while the runtime is being shut down.
constexpr Duration::rep pollsWithin(Duration limit, Duration poll) {
    return limit / poll + 1;
}

} // namespace

SurfaceMoves::SurfaceMoves(Runtime& runtime, const ReceiverState& state, const BankMap& bankMap, SurfaceDesk& desk,
                           DisplayWatch& displays)
    : runtime(runtime), state(state), bankMap(bankMap), desk(desk), displays(displays) {}

// ---- Looking

BankLayout SurfaceMoves::layout() const {
    return runtime.syncMain([this] {
        return BankLayout{.tracks = static_cast<int>(state.published.session.size()), .width = state.published.winW};
    });
}

TrackNames SurfaceMoves::snapshotWindow() const {
    return runtime.syncMain([this] { return bankMap.window(); });
}

TrackNames SurfaceMoves::stableWindow() const {
    TrackNames last = snapshotWindow();
    for (int sample = 0; sample < stableWindowSamples; ++sample) {
        runtime.sleepFor(windowSample);
        TrackNames now = snapshotWindow();
        if (now == last) return now;
        last = std::move(now);
    }
    return last;
}

int SurfaceMoves::shownOffset() const {
    const std::optional<int> offset = runtime.syncMain(
        [this] { return std::optional<int>(locate(state.published.session.tracks, bankMap.window())); });
    return offset.value_or(-1);
}

int SurfaceMoves::recognizedOffset(Duration still) {
    for (auto polls = pollsWithin(recognitionLimit, stillPoll); polls > 0; --polls) {
        const bool allThere = displays.age() >= still; // asked first: the main thread may take its time to look
        const int offset = shownOffset();
        if (offset >= 0 || allThere) return offset;
        runtime.sleepFor(stillPoll);
    }
    return shownOffset();
}

void SurfaceMoves::shortQuietWait(const std::function<bool()>& enough) {
    const TimePoint begin = runtime.now();
    for (auto polls = pollsWithin(quietLimit, quietPoll); polls > 0 && runtime.now() - begin < quietLimit; --polls) {
        if (enough()) return;
        runtime.sleepFor(quietPoll);
        if (displays.age() > quietNames && runtime.now() - begin > quietAtLeast) return;
    }
}

void SurfaceMoves::waitForStillNames(Duration still, Duration limit) {
    const TimePoint begin = runtime.now();
    for (auto polls = pollsWithin(limit, stillPoll); polls > 0 && runtime.now() - begin < limit; --polls) {
        if (displays.age() > still) return;
        runtime.sleepFor(stillPoll);
    }
}

// ---- Moving

void SurfaceMoves::press(int port) {
    displays.expectNames();
    desk.pressBank(port);
}

void SurfaceMoves::moveWindow(int target) {
    const BankLayout session = layout();
    if (session.tracks <= 0) return;
    target = std::clamp(target, 0, session.maxOffset());
    shortQuietWait();
    int current = shownOffset();
    for (int presses = 0; current >= 0 && current != target && presses < maxPresses; ++presses) {
        const BankStep step = nextBankStep(current, target, session);
        press(step.port);
        current = step.predicted;
        runtime.sleepFor(step.byBank() ? afterBankPress : afterChannelPress);
    }
    shortQuietWait();
}

void SurfaceMoves::moveWindowReliably(int target) {
    target = std::clamp(target, 0, layout().maxOffset());
    for (int attempt = 0; attempt < maxAttempts; ++attempt) {
        moveWindow(target);
        waitForStillNames(arrivedStill, arrivedLimit);
        if (shownOffset() == target) return;
        runtime.sleepFor(beforeNextAttempt);
    }
}

} // namespace lumbrine
