#include "model/reactions/hello_response.h"

#include "client_link/state_messages.h"

#include <algorithm>

namespace lumbrine {

HelloResponse::HelloResponse(Runtime& rt, const ReceiverState& receiverState, Parts otherParts, Bilingual bilingual)
    : state(receiverState), parts(otherParts), text(bilingual), awaitedLock(rt) {}

void HelloResponse::pong(std::string_view key) {
    parts.endpoint.send(pongMessage(), key);
}

bool HelloResponse::calls(std::string_view key) {
    const Lock lock(awaitedLock);
    return awaited.emplace(key).second;
}

void HelloResponse::followUp(const std::string& key) {
    {
        const Lock lock(awaitedLock);
        awaited.erase(key);
    }
    logArrival();
    parts.mirror.snapshotFor(key, [this] { sendShown(); });
    parts.table.sendAllRowsTo(key, [this, key] {
        parts.mirror.snapshotFor(key, [this] { sendSession(); });
        fillGaps();
    });
}

void HelloResponse::logArrival() {
    if (!state.published.iosClientDesc.empty()) return;
    std::string addresses;
    for (const std::string& ip : parts.endpoint.connectedIPs())
        addresses += (addresses.empty() ? "" : ", ") + ip;
    parts.log.appendLog(text("iOS connected: ", "iOS 接続: ") + addresses);
}

void HelloResponse::sendShown() {
    ClientMirror& mirror = parts.mirror;
    mirror.sendShownTrackNames();
    mirror.sendAllSwitches();
    mirror.sendShownFaders();
    mirror.sendAllPans();
    mirror.sendPanMode();
    mirror.sendBankPosToClient();
    mirror.sendSelectsToClient();
    mirror.sendVisibleFullNames();
    mirror.sendVisibleColors();
    mirror.sendVisibleInputMons();
    mirror.sendAllAutoModes();
    mirror.sendTransport();
}

void HelloResponse::sendSession() {
    parts.mirror.sendSessAutoModes();
    parts.mirror.sendSessPan();
}

void HelloResponse::fillGaps() {
    if (!state.published.huiConnected) return;
    if (state.published.trackMap.empty()) parts.calibration.calibrateBanks(false);
    const bool noModeKnown =
        std::ranges::all_of(state.automation.autoModeCache, [](std::uint8_t mode) { return mode == autoModeUnknown; });
    if (noModeKnown && state.quiet() && !state.transportRunning()) parts.automation.pollAllAutoModes();
}

} // namespace lumbrine
