#include "model/hands/automation_modes.h"

#include "model/hands/automation_mode_text.h"

#include <algorithm>
#include <cassert>
#include <memory>

namespace lumbrine {

namespace {

constexpr Duration pollAllInterval = seconds(3.0);

} // namespace

AutomationModes::AutomationModes(const Jobs& jobs, ReceiverState& state, ActivityLog& log, Parts parts)
    : jobs(jobs), state(state), log(log), parts(parts) {}

// ---- Reading

std::uint8_t AutomationModes::autoProbe(Strip strip, const std::optional<Ownership>& owner,
                                        const std::function<void()>& whileHeld) {
    parts.displays.beginProbe(strip);
    parts.desk.holdAuto(strip, [&] { return parts.queue.isWanted(owner); }, whileHeld);
    const std::uint8_t mode = parts.displays.endProbe();
    jobs.onMainAfter(DisplayWatch::nameReturns, [this, strip] { parts.displays.settle(strip); });
    return mode;
}

void AutomationModes::pollAutoMode(Strip strip) {
    jobs.runOnMain([this, strip] {
        if (leds.confirms(strip, knownMode(strip), jobs.runtime.now())) return;
        if (std::ranges::find(toPoll, strip) == toPoll.end()) toPoll.push_back(strip);
        requestPoll();
    });
}

// One strip a job, so that whatever is more urgent comes next.
void AutomationModes::requestPoll() {
    struct Poll {
        std::optional<TrackOnStrip> track;
        std::uint8_t mode = autoModeUnknown;
    };
    const auto poll = std::make_shared<Poll>();
    parts.queue.request({
        .kind = DeskJob::Kind::poll,
        .begin =
            [this, poll] {
                if (!mayProbe()) toPoll.clear();
                if (toPoll.empty()) return false;
                poll->track = state.shownOn(toPoll.front());
                toPoll.erase(toPoll.begin());
                return true;
            },
        .work = [this, poll] { poll->mode = autoProbe(poll->track->strip, {}); },
        .end =
            [this, poll] {
                const Strip strip = poll->track->strip;
                if (isStillOn(*poll->track, strip)) {
                    leds.answered(strip, poll->mode, jobs.runtime.now());
                    autoModeUpdate(strip, poll->mode);
                }
                if (!toPoll.empty()) requestPoll();
            },
    });
}

// While the banks move, the track may be gone before it answers.
bool AutomationModes::mayProbe() const {
    return state.published.huiConnected && state.quiet() && !state.transportRunning() &&
           !state.handsOn(jobs.runtime.now());
}

// Within a job. Of a track whose place in the session is not known, the name does not tell: a mode may stand there.
bool AutomationModes::isStillOn(const TrackOnStrip& track, Strip strip) const {
    return !track.index || state.stripShowing(track) == strip;
}

void AutomationModes::pollAllAutoModes() {
    assert(jobs.runtime.onMain());
    const TimePoint now = jobs.runtime.now();
    if (now - state.lastAutoPollAll <= pollAllInterval) return;
    state.lastAutoPollAll = now;
    for (int i = 0; i < state.published.winW; ++i)
        pollAutoMode(*Strip::of(i));
}

void AutomationModes::ledShown(Strip strip, AutoLedColour colour) {
    leds.shown(strip, colour, jobs.runtime.now());
    if (ledChecks.test(strip.slot()) || leds.confirms(strip, knownMode(strip), jobs.runtime.now())) return;
    ledChecks.set(strip.slot());
    jobs.onMainAfter(AutoLeds::flash, [this, strip] { checkLed(strip); });
}

// By now it is sure whether the LED flashes, and the client's own change of the mode is over.
void AutomationModes::checkLed(Strip strip) {
    ledChecks.reset(strip.slot());
    if (leds.contradicts(strip, knownMode(strip), jobs.runtime.now())) pollAutoMode(strip);
}

void AutomationModes::autoModeUpdate(Strip strip, std::uint8_t code) {
    if (code == autoModeUnknown) return;
    jobs.runOnMain([this, strip, code] {
        if (std::exchange(state.published.strip(strip).mode, code) != code) parts.mirror.sendAutoModesIfChanged();
    });
}

// ---- Setting

std::uint8_t AutomationModes::pressMode(Strip strip, int modePort, Ownership owner,
                                        const std::function<bool()>& isThere) {
    return autoProbe(strip, owner, [&] {
        if (parts.displays.modeHasChanged()) return;
        if (jobs.runtime.syncMain([&] { return parts.queue.isWanted(owner) && isThere(); }))
            parts.desk.pressMode(strip, modePort);
    });
}

void AutomationModes::setAutoMode(Strip strip, int modePort, Asked asked) {
    jobs.runOnMain([this, strip, modePort, asked] { requestMode(state.shownOn(strip), modePort, asked); });
}

void AutomationModes::requestMode(const TrackOnStrip& track, int modePort, Asked asked) {
    struct Setting {
        std::optional<Strip> strip;
        std::optional<std::uint64_t> label; // the name that the client knows there
        bool isPressed = false;
        std::uint8_t mode = autoModeUnknown;
    };
    const auto setting = std::make_shared<Setting>();
    parts.queue.request({
        .kind = DeskJob::Kind::mode,
        .name = command_name::mode,
        .subject = track.strip.index(),
        .owner = asked.owner,
        .until = asked.at + parts.queue.patience(),
        .begin =
            [this, setting, track] {
                setting->strip = state.stripShowing(track);
                if (setting->strip) setting->label = parts.surfaces.knownLabel(*setting->strip);
                if (!setting->label) parts.drops.tell(command_name::mode, DropReason::trackGone);
                return setting->label.has_value();
            },
        .work =
            [this, setting, track, modePort, owner = asked.owner] {
                setting->mode = pressMode(*setting->strip, modePort, owner, [this, &setting, &track] {
                    const Strip strip = *setting->strip;
                    setting->isPressed = isStillOn(track, strip) && parts.surfaces.knownLabel(strip) == setting->label;
                    return setting->isPressed;
                });
            },
        .end =
            [this, setting, track, owner = asked.owner] {
                if (!setting->isPressed && !parts.queue.isWanted(owner))
                    return parts.drops.tell(command_name::mode, DropReason::ownerChanged);
                if (!setting->isPressed || !isStillOn(track, *setting->strip))
                    return parts.drops.tell(command_name::mode, DropReason::trackGone);
                autoModeUpdate(*setting->strip, setting->mode);
                logMode(*setting->strip);
            },
    });
}

void AutomationModes::logMode(Strip strip) {
    const std::string channel = "← auto ch" + std::to_string(strip.index() + 1);
    const std::string mode = autoModeName(state.published.strip(strip).mode, log.text);
    log.say(channel + " mode changed → " + mode, channel + " モード変更 → " + mode);
}

} // namespace lumbrine
