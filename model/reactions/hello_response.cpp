#include "model/reactions/hello_response.h"

#include "client_link/state_messages.h"

#include <algorithm>

namespace lumbrine {

HelloResponse::HelloResponse(Runtime& runtime, const ReceiverState& state, ActivityLog& log, Parts parts)
    : state(state), log(log), parts(parts), awaitedLock(runtime) {}

void HelloResponse::pong(std::string_view key) {
    parts.endpoint.send(pongMessage(), key);
}

bool HelloResponse::claimFollowUp(std::string_view key) {
    const Lock lock(awaitedLock);
    return awaited.emplace(key).second;
}

void HelloResponse::followUp(const std::string& key) {
    {
        const Lock lock(awaitedLock);
        awaited.erase(key);
    }
    logArrival();
    parts.mirror.sendTo(key, occasion::hello);
    parts.table.sendAllRowsTo(key, [this, key] {
        parts.mirror.sendTo(key, occasion::session);
        fillGaps();
    });
}

void HelloResponse::logArrival() {
    if (!state.published.iosClientDesc.empty()) return;
    std::string addresses;
    for (const std::string& ip : parts.endpoint.connectedIPs())
        addresses += (addresses.empty() ? "" : ", ") + ip;
    log.say("iOS connected: " + addresses, "iOS 接続: " + addresses);
}

void HelloResponse::fillGaps() {
    if (!state.published.huiConnected) return;
    if (state.published.session.empty()) parts.calibration.calibrateBanks(false);
    const bool noModeKnown = std::ranges::all_of(
        state.published.strips, [](std::uint8_t mode) { return mode == autoModeUnknown; }, &StripState::mode);
    if (noModeKnown && state.quiet() && !state.transportRunning()) parts.automation.pollAllAutoModes();
}

} // namespace lumbrine
