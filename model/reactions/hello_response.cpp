#include "model/reactions/hello_response.h"

#include "client_link/state_messages.h"

#include <algorithm>

namespace lumbrine {

HelloResponse::HelloResponse(const Jobs& jobs, const ReceiverState& state, ActivityLog& log, Parts parts)
    : jobs(jobs), state(state), log(log), parts(parts) {}

void HelloResponse::pong(std::string_view key) {
    parts.endpoint.send(pongMessage(), key);
}

void HelloResponse::followUp() {
    const TimePoint now = jobs.runtime.now();
    if (now < nextStateAt) {
        jobs.onMainAfter(nextStateAt - now, [this] { sendState(); });
    } else {
        sendState();
    }
}

// To the present owner: the hello of a former one is not answered any more.
void HelloResponse::sendState() {
    claimed = false;
    const auto key = parts.endpoint.liveOwnerKey();
    if (!key) return;
    nextStateAt = jobs.runtime.now() + statePeriod;
    logArrival();
    parts.mirror.sendTo(*key, occasion::hello);
    parts.table.sendAllRowsTo(*key, [this, key] {
        parts.mirror.sendTo(*key, occasion::session);
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
