#include "model/bank/group_operations.h"

#include <algorithm>
#include <cassert>
#include <memory>
#include <utility>

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
    if (!add(faders, command_name::faderWalk, entries, asked)) return;
    const auto work = std::make_shared<Faders>();
    const auto reached = std::make_shared<Reached>();
    parts.walk.request({
        .purpose = SurfaceWalk::Purpose::faders,
        .name = command_name::faderWalk,
        .asked = asked,
        .whileTransportRuns = true,
        .wanted =
            [this, work, reached](const SurfaceWalk::Start&) {
                *work = take(faders, command_name::faderWalk, *reached);
                return !work->empty();
            },
        .steps =
            [this, work, reached, asked](const SurfaceWalk::Start& start) {
                for (const auto& [place, wish] : *work)
                    if (parts.walk.goesOn(asked) && moveFader(wish, asked, start.session)) ++reached->members;
            },
        .report = [this, reached] { reportFaders(*reached); },
        .dropped = [this] { faders.clear(); },
    });
}

// As a finger would: in Touch and Latch, Pro Tools records a move only while the fader is touched.
bool GroupOperations::moveFader(const Wish<double>& wish, const Asked& asked, BankLayout session) {
    const auto strip = bringOntoSurfaces(wish.track, session);
    if (!strip || !parts.walk.goesOn(asked)) return false;
    HUIEngine& engine = parts.surfaces.engineOf(*strip);
    engine.touch(strip->engineStrip());
    engine.sendFader(strip->engineStrip(), wish.value);
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
    std::vector<std::pair<int, int>> entries;
    entries.reserve(members.size());
    for (const int member : members)
        entries.emplace_back(member, huiPort);
    if (!add(modes, command_name::modeWalk, entries, asked)) return;
    const auto work = std::make_shared<Modes>();
    const auto reached = std::make_shared<Reached>();
    parts.walk.request({
        .purpose = SurfaceWalk::Purpose::modes,
        .name = command_name::modeWalk,
        .asked = asked,
        .wanted =
            [this, work, reached](const SurfaceWalk::Start&) {
                *work = take(modes, command_name::modeWalk, *reached);
                return !work->empty();
            },
        .steps =
            [this, work, reached, asked](const SurfaceWalk::Start& start) {
                for (const auto& [place, wish] : *work)
                    if (parts.walk.goesOn(asked) && pressMode(wish, asked, start.session)) ++reached->members;
            },
        .report = [this, reached] { reportModes(*reached); },
        .dropped = [this] { modes.clear(); },
    });
}

bool GroupOperations::pressMode(const Wish<int>& wish, const Asked& asked, BankLayout session) {
    const auto strip = bringOntoSurfaces(wish.track, session);
    if (!strip) return false;
    bool isPressed = false;
    const std::uint8_t shown = parts.automation.pressMode(*strip, wish.value, asked.owner, [&] {
        isPressed = stripShowing(wish.track, session) == strip;
        return isPressed;
    });
    if (shown != autoModeUnknown)
        jobs.runOnMain([this, strip = *strip, track = wish.track, shown] { storeMode(strip, track, shown); });
    return isPressed;
}

void GroupOperations::storeMode(Strip strip, const TrackRef& track, std::uint8_t mode) {
    assert(jobs.runtime.onMain());
    state.published.strip(strip).mode = mode;
    Session& session = state.published.session;
    session.surveyed = true;
    if (const auto place = state.placeOf(track)) session.tracks[*place].mode = mode;
}

void GroupOperations::reportModes(Reached reached) {
    parts.mirror.sendAllAutoModes();
    parts.automation.pollAllAutoModes();
    log.say("✓ Applied automation mode to " + reached.inEnglish() + " group tracks",
            "✓ グループ " + reached.inJapanese() + " 本にオートモードを適用しました");
}

// ---- Members

// The wishes for what the client means by its rows. False when there are none to carry out.
template <typename Value>
bool GroupOperations::add(Wishes<Value>& wishes, CommandName name, const std::vector<std::pair<int, Value>>& entries,
                          const Asked& asked) {
    bool isShown = false;
    bool isInSession = false;
    for (const auto& [member, value] : entries) {
        if (member < 0) continue;
        isInSession = isInSession || static_cast<std::size_t>(member) < state.published.session.size();
        const auto track = parts.table.meant(static_cast<std::size_t>(member), asked.owner);
        isShown = isShown || track;
        if (const auto place = track ? state.placeOf(*track) : std::nullopt)
            wishes.insert_or_assign(*place, Wish<Value>{.track = *track, .value = value});
    }
    if (wishes.empty() && (isShown || isInSession))
        parts.drops.tell(name, isShown ? DropReason::otherTracks : DropReason::notShown);
    return !wishes.empty();
}

// What waits, by the places of the tracks that are still there.
template <typename Value>
GroupOperations::Wishes<Value> GroupOperations::take(Wishes<Value>& wishes, CommandName name, Reached& reached) {
    Wishes<Value> taken;
    reached.of = wishes.size();
    for (auto& [was, wish] : std::exchange(wishes, {}))
        if (const auto place = state.placeOf(wish.track)) taken.insert_or_assign(*place, std::move(wish));
    if (taken.empty()) parts.drops.tell(name, DropReason::otherTracks);
    return taken;
}

// On the fourth strip, where the session allows; absent when the surfaces did not follow.
std::optional<Strip> GroupOperations::bringOntoSurfaces(const TrackRef& track, BankLayout session) {
    if (const auto strip = stripShowing(track, session)) return strip;
    const auto place = jobs.runtime.syncMain([&] { return state.placeOf(track); });
    if (!place) return std::nullopt;
    parts.moves.moveWindowReliably(std::clamp(static_cast<int>(*place) - stripsBefore, 0, session.maxOffset()));
    return stripShowing(track, session);
}

std::optional<Strip> GroupOperations::stripShowing(const TrackRef& track, BankLayout session) const {
    return jobs.runtime.syncMain([&]() -> std::optional<Strip> {
        const auto place = state.placeOf(track);
        const int offset = state.published.bankOffset;
        if (!place || offset < 0) return std::nullopt;
        const int slot = static_cast<int>(*place) - offset;
        return slot >= 0 && slot < session.width ? Strip::of(slot) : std::nullopt;
    });
}

} // namespace lumbrine
