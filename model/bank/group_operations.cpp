#include "model/bank/group_operations.h"

#include <algorithm>
#include <cassert>
#include <memory>

namespace lumbrine {

namespace {

constexpr int modePorts = 6;
constexpr int stripsBefore = 3; // of a member that is brought onto the surfaces
constexpr Duration faderTime = seconds(0.03);

} // namespace

// "3 of 5", or "5" when all were reached.
std::string GroupOperations::Reached::inEnglish() const {
    return (members < of ? std::to_string(members) + " of " : "") + std::to_string(of);
}

std::string GroupOperations::Reached::inJapanese() const {
    return std::to_string(of) + (members < of ? " 本中 " + std::to_string(members) : "");
}

GroupOperations::GroupOperations(const Jobs& jobs, ReceiverState& state, ActivityLog& log, Parts parts)
    : jobs(jobs), state(state), log(log), parts(parts) {}

// ---- Faders

void GroupOperations::groupSetFaders(std::vector<FaderEntry> entries, Asked asked) {
    jobs.runOnMain([this, entries = std::move(entries), asked] { requestFaders(entries, asked); });
}

void GroupOperations::requestFaders(const std::vector<FaderEntry>& entries, Asked asked) {
    for (const auto& [member, value] : entries)
        if (isInSession(member)) faders.insert_or_assign(member, value);
    if (faders.empty()) return;
    const auto work = std::make_shared<Faders>();
    const auto reached = std::make_shared<Reached>();
    parts.walk.request({
        .purpose = SurfaceWalk::Purpose::faders,
        .name = command_name::faderWalk,
        .asked = asked,
        .wanted =
            [this, work](const SurfaceWalk::Start&) {
                *work = std::exchange(faders, {});
                std::erase_if(*work, [this](const auto& entry) { return !isInSession(entry.first); });
                return !work->empty();
            },
        .steps =
            [this, work, reached, asked](const SurfaceWalk::Start& start) {
                reached->of = work->size();
                for (const auto& [member, value] : *work)
                    if (parts.walk.goesOn(asked) && moveFader(member, value, asked, start.session)) ++reached->members;
            },
        .report = [this, reached] { reportFaders(*reached); },
        .dropped = [this] { faders.clear(); },
    });
}

// As a finger would: in Touch and Latch, Pro Tools records a move only while the fader is touched.
bool GroupOperations::moveFader(int member, double value, const Asked& asked, BankLayout session) {
    const auto strip = bringOntoSurfaces(member, session);
    if (!strip || !parts.walk.goesOn(asked)) return false;
    HUIEngine& engine = parts.surfaces.engineOf(*strip);
    engine.touch(strip->engineStrip());
    engine.sendFader(strip->engineStrip(), value);
    jobs.runtime.sleepFor(faderTime);
    engine.release(strip->engineStrip());
    parts.capture.captureNow();
    return true;
}

void GroupOperations::reportFaders(Reached reached) {
    parts.mirror.sendAllAutoModes();
    log.say("✓ Applied faders to " + reached.inEnglish() + " group tracks outside the window",
            "✓ グループ窓外 " + reached.inJapanese() + " 本のフェーダーを反映しました");
}

// ---- Automation modes

void GroupOperations::groupSetAutoMode(std::vector<int> members, int huiPort, Asked asked) {
    if (huiPort < 0 || huiPort >= modePorts) return;
    jobs.runOnMain([this, members = std::move(members), huiPort, asked] { requestModes(members, huiPort, asked); });
}

void GroupOperations::requestModes(const std::vector<int>& members, int huiPort, Asked asked) {
    for (const int member : members)
        if (isInSession(member)) modes.insert_or_assign(member, huiPort);
    if (modes.empty()) return;
    const auto work = std::make_shared<Modes>();
    const auto reached = std::make_shared<Reached>();
    parts.walk.request({
        .purpose = SurfaceWalk::Purpose::modes,
        .name = command_name::modeWalk,
        .asked = asked,
        .wanted =
            [this, work](const SurfaceWalk::Start& start) {
                *work = std::exchange(modes, {});
                std::erase_if(*work, [this](const auto& entry) { return !isInSession(entry.first); });
                return !start.transportRunning && !work->empty();
            },
        .steps =
            [this, work, reached, asked](const SurfaceWalk::Start& start) {
                reached->of = work->size();
                for (const auto& [member, port] : *work)
                    if (parts.walk.goesOn(asked) && pressMode(member, port, asked, start.session)) ++reached->members;
            },
        .report = [this, reached] { reportModes(*reached); },
        .dropped = [this] { modes.clear(); },
    });
}

bool GroupOperations::pressMode(int member, int huiPort, const Asked& asked, BankLayout session) {
    const auto strip = bringOntoSurfaces(member, session);
    if (!strip) return false;
    bool isPressed = false;
    const std::uint8_t shown = parts.automation.pressMode(*strip, huiPort, asked.owner, [&] {
        isPressed = stripShowing(member, session) == strip;
        return isPressed;
    });
    if (shown != autoModeUnknown)
        jobs.runOnMain([this, strip = *strip, member, shown] { storeMode(strip, member, shown); });
    return isPressed;
}

bool GroupOperations::isInSession(int member) const {
    return member >= 0 && static_cast<std::size_t>(member) < state.published.session.size();
}

void GroupOperations::storeMode(Strip strip, int member, std::uint8_t mode) {
    assert(jobs.runtime.onMain());
    state.published.strip(strip).mode = mode;
    Session& session = state.published.session;
    session.surveyed = true;
    const auto track = static_cast<std::size_t>(member);
    if (track < session.size()) session.tracks[track].mode = mode;
}

void GroupOperations::reportModes(Reached reached) {
    parts.mirror.sendAllAutoModes();
    parts.automation.pollAllAutoModes();
    log.say("✓ Applied automation mode to " + reached.inEnglish() + " group tracks",
            "✓ グループ " + reached.inJapanese() + " 本にオートモードを適用しました");
}

// ---- Finding members

// On the fourth strip, where the session allows; absent when the surfaces did not follow.
std::optional<Strip> GroupOperations::bringOntoSurfaces(int member, BankLayout session) {
    if (const auto strip = stripShowing(member, session)) return strip;
    parts.moves.moveWindowReliably(std::clamp(member - stripsBefore, 0, session.maxOffset()));
    return stripShowing(member, session);
}

std::optional<Strip> GroupOperations::stripShowing(int member, BankLayout session) const {
    const std::optional<int> offset =
        jobs.runtime.syncMain([this] { return std::optional<int>(state.published.bankOffset); });
    if (!offset || *offset < 0 || member < *offset || member >= *offset + session.width) return std::nullopt;
    return Strip::of(member - *offset);
}

} // namespace lumbrine
