#include "model/bank/surface_moves.h"

#include <algorithm>
#include <cassert>
#include <cstdlib>
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

constexpr auto reactionPolls = pollsWithin(HostReaction::longest, quietPoll);

} // namespace

SurfaceMoves::SurfaceMoves(Runtime& runtime, const ReceiverState& state, const BankMap& bankMap, SurfaceDesk& desk,
                           DisplayWatch& displays)
    : runtime(runtime), state(state), bankMap(bankMap), desk(desk), displays(displays) {}

std::string SurfaceMoves::habits() const {
    const auto inWords = [](const std::optional<bool>& aligns) {
        return !aligns ? "not seen yet" : *aligns ? "to the next multiple" : "by a bank";
    };
    return "a press shows after " + std::to_string(inSeconds(displays.usualReaction())) + " s and is awaited for " +
           std::to_string(inSeconds(displays.longestReaction())) + " s; from between two multiples bank keys lead " +
           inWords(rule.backAligns) + " back, " + inWords(rule.forwardAligns) + " forward";
}

// ---- Looking

BankLayout SurfaceMoves::layout() const {
    return runtime.syncMain([this] {
        return BankLayout{
            .tracks = static_cast<int>(state.published.session.size()), .width = state.published.winW, .rule = rule};
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

SurveyedBank SurfaceMoves::stableLook() const {
    return withFaders(stableWindow());
}

SurveyedBank SurfaceMoves::withFaders(TrackNames names) const {
    SurveyedBank look{.names = std::move(names), .faders = {}};
    // Nothing comes back while the runtime is being shut down.
    look.faders = runtime.syncMain([this] {
        std::vector<std::optional<double>> faders;
        for (const StripState& strip : state.published.strips)
            faders.push_back(strip.shownFader);
        return faders;
    });
    look.faders.resize(look.names.size());
    return look;
}

int SurfaceMoves::shownOffset() const {
    const std::optional<int> offset = runtime.syncMain([this] { return std::optional<int>(bankMap.shownPosition()); });
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
    displays.pressed();
    lastPress = runtime.now();
    desk.pressBank(port);
}

BankStep SurfaceMoves::stepTowards(int target, int current, BankLayout session, bool channels) {
    const bool isNear = std::abs(target - current) < session.width;
    const BankStep step =
        channels && isNear ? nextChannelStep(current, target) : nextBankStep(current, target, session);
    press(step.port);
    return step;
}

int SurfaceMoves::ledTo(int from, BankStep step, BankLayout& session) {
    if (!step.byBank() || from % session.width == 0) return step.predicted;
    int shown = shownOffset();
    const auto mayBeLate = [&] { return !rule.of(step.port) && (shown == from || shown < 0); };
    for (auto polls = reactionPolls; polls > 0 && mayBeLate() && sincePress() < displays.longestReaction(); --polls) {
        runtime.sleepFor(quietPoll);
        shown = shownOffset();
    }
    const auto aligns = alignsBy(step.port, from, shown, session);
    if (!aligns) return step.predicted;
    rule.of(step.port) = aligns;
    session.rule = rule;
    return shown;
}

bool SurfaceMoves::mayShowEffect() const {
    return displays.age() <= sincePress() && sincePress() >= displays.usualReaction() + HostReaction::margin;
}

void SurfaceMoves::awaitEffect(const std::function<bool()>& enough) {
    shortQuietWait(enough);
    const auto isOpen = [&] { return !mayShowEffect() && sincePress() < HostReaction::longest; };
    for (auto polls = reactionPolls; polls > 0 && isOpen(); --polls) {
        if (enough()) return;
        runtime.sleepFor(quietPoll);
    }
    waitForStillNames(quietNames, quietLimit);
}

int SurfaceMoves::arrival(int target, const std::function<bool()>& enough) {
    shortQuietWait();
    int shown = shownOffset();
    const auto isOpen = [&] {
        const Duration mayTake =
            shown == target ? displays.usualReaction() + HostReaction::margin : displays.longestReaction();
        return sincePress() < mayTake;
    };
    for (auto polls = reactionPolls; polls > 0 && isOpen(); --polls) {
        if (enough()) return -1;
        runtime.sleepFor(quietPoll);
        shown = shownOffset();
    }
    return shown;
}

void SurfaceMoves::awaitLastPress(int target, const std::function<bool()>& enough) {
    const auto isOpen = [&] {
        if (sincePress() >= HostReaction::longest) return false;
        const int shown = shownOffset();
        return shown >= 0 ? shown != target : !mayShowEffect();
    };
    for (auto polls = reactionPolls; polls > 0 && isOpen() && !enough(); --polls)
        runtime.sleepFor(quietPoll);
}

SurveyedBank SurfaceMoves::lookAfterPress(const SurveyedBank& before) {
    shortQuietWait();
    SurveyedBank after = stableLook();
    const auto isOpen = [&] { return looksLike(after, before) && sincePress() < HostReaction::longest; };
    for (auto polls = reactionPolls; polls > 0 && isOpen(); --polls) {
        runtime.sleepFor(quietPoll);
        if (looksLike(withFaders(snapshotWindow()), before)) continue;
        shortQuietWait();
        after = stableLook();
    }
    return after;
}

void SurfaceMoves::pressChannels(int port, std::size_t times) {
    for (std::size_t i = 0; i < times; ++i) {
        if (i > 0) runtime.sleepFor(afterChannelPress);
        press(port);
    }
}

void SurfaceMoves::moveWindow(int target) {
    const int view = std::clamp(target, 0, layout().maxOffset());
    moveOnce(view, false);
    awaitLastPress(view);
}

void SurfaceMoves::moveOnce(int target, bool isCorrection) {
    BankLayout session = layout();
    if (session.tracks <= 0) return;
    shortQuietWait();
    int current = shownOffset();
    if (current < 0 || current == target) return shortQuietWait();
    for (int presses = 0; current != target && presses < maxPresses; ++presses) {
        const BankStep step = stepTowards(target, current, session, isCorrection);
        runtime.sleepFor(step.byBank() ? afterBankPress : afterChannelPress);
        current = ledTo(current, step, session);
    }
    arrival(target);
}

void SurfaceMoves::moveWindowReliably(int target) {
    returnTo(std::clamp(target, 0, layout().maxOffset()));
}

void SurfaceMoves::returnTo(int view) {
    int before = -1;
    for (int attempt = 0; attempt < maxAttempts; ++attempt) {
        const bool hasMoved = before >= 0 && shownOffset() != before;
        before = shownOffset();
        moveOnce(view, hasMoved);
        waitForStillNames(arrivedStill, arrivedLimit);
        if (shownOffset() == view) return;
        runtime.sleepFor(beforeNextAttempt);
    }
    awaitLastPress(view);
}

} // namespace lumbrine
