#include "model/bank/group_operations.h"

#include <algorithm>
#include <cassert>
#include <map>

namespace lumbrine {

namespace {

constexpr int modePorts = 6;
constexpr int stripsBefore = 3; // of a member that is brought onto the surfaces
constexpr Duration faderTime = seconds(0.03);

} // namespace

GroupOperations::GroupOperations(const Jobs& jobs, ReceiverState& state, ActivityLog& log, Parts parts)
    : jobs(jobs), state(state), log(log), parts(parts) {}

// ---- Faders

void GroupOperations::groupSetFaders(std::vector<FaderEntry> entries) {
    jobs.onQueue(parts.automation.queue(),
                 [this, entries = std::move(entries)]() mutable { setFaders(std::move(entries)); });
}

void GroupOperations::setFaders(std::vector<FaderEntry> entries) {
    const auto begun = parts.walk.begin([&entries](const SurfaceWalk::Start& start) {
        std::erase_if(entries,
                      [&](const FaderEntry& entry) { return entry.first < 0 || entry.first >= start.session.tracks; });
        return !entries.empty();
    });
    if (!begun) return;
    // In the order of the session, so that the banks move one way. Entries of one member stay in their order.
    const std::multimap<int, double> ordered(entries.begin(), entries.end());
    for (const auto& [member, value] : ordered)
        if (const auto strip = bringOntoSurfaces(member, begun->session)) moveFader(*strip, value);
    parts.walk.end(*begun, [this, count = entries.size()] { reportFaders(count); });
}

// As a finger would: in Touch and Latch, Pro Tools records a move only while the fader is touched.
void GroupOperations::moveFader(Strip strip, double value) {
    HUIEngine& engine = parts.surfaces.engineOf(strip);
    engine.touch(strip.engineStrip());
    engine.sendFader(strip.engineStrip(), value);
    jobs.runtime.sleepFor(faderTime);
    engine.release(strip.engineStrip());
}

void GroupOperations::reportFaders(std::size_t count) {
    parts.mirror.sendAllAutoModes();
    const std::string tracks = std::to_string(count);
    log.say("✓ Applied faders to " + tracks + " group tracks outside the window",
            "✓ グループ窓外 " + tracks + " 本のフェーダーを反映しました");
}

// ---- Automation modes

void GroupOperations::groupSetAutoMode(std::vector<int> members, int huiPort) {
    if (huiPort < 0 || huiPort >= modePorts) return;
    jobs.onQueue(parts.automation.queue(),
                 [this, members = std::move(members), huiPort]() mutable { setAutoMode(std::move(members), huiPort); });
}

void GroupOperations::setAutoMode(std::vector<int> members, int huiPort) {
    const auto begun = parts.walk.begin([&members](const SurfaceWalk::Start& start) {
        std::erase_if(members, [&](int member) { return member < 0 || member >= start.session.tracks; });
        return !start.transportRunning && !members.empty();
    });
    if (!begun) return;
    std::ranges::sort(members);
    members.erase(std::ranges::unique(members).begin(), members.end());
    for (const int member : members)
        if (const auto strip = bringOntoSurfaces(member, begun->session)) pressMode(*strip, huiPort, member);
    parts.walk.end(*begun, [this, count = members.size()] { reportModes(count); });
}

void GroupOperations::pressMode(Strip strip, int huiPort, int member) {
    const std::uint8_t shown = parts.automation.pressMode(strip, huiPort);
    if (shown == autoModeUnknown) return;
    jobs.runOnMain([this, strip, member, shown] { storeMode(strip, member, shown); });
}

void GroupOperations::storeMode(Strip strip, int member, std::uint8_t mode) {
    assert(jobs.runtime.onMain());
    state.published.strip(strip).mode = mode;
    Session& session = state.published.session;
    session.surveyed = true;
    const auto track = static_cast<std::size_t>(member);
    if (track < session.size()) session.tracks[track].mode = mode;
}

void GroupOperations::reportModes(std::size_t count) {
    parts.mirror.sendAllAutoModes();
    parts.automation.pollAllAutoModes();
    const std::string tracks = std::to_string(count);
    log.say("✓ Applied automation mode to " + tracks + " group tracks",
            "✓ グループ " + tracks + " 本にオートモードを適用しました");
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
