#include "model/bank/bank_map.h"

#include <cassert>

namespace lumbrine {

namespace {

std::string bracketed(std::span<const std::string> names) {
    std::string list = "[";
    for (const std::string& name : names)
        list += (list.size() > 1 ? ", \"" : "\"") + name + "\"";
    return list + "]";
}

void forgetHistory(FlashingLed& led) {
    led.lastEdge = distantPast;
    led.blinkUntil = distantPast;
    led.shortStreak = 0;
}

} // namespace

BankMap::BankMap(Runtime& rt, ReceiverState& receiverState, ClientMirror& clientMirror, ActivityLog& activityLog,
                 bool debugOutput)
    : runtime(rt), state(receiverState), mirror(clientMirror), log(activityLog), debug(debugOutput) {}

std::span<const std::string> BankMap::window() const {
    return std::span(state.mirror.nameCache).first(state.shownStrips());
}

void BankMap::relocalize() {
    assert(runtime.onMain());
    if (state.published.trackMap.empty() || state.bank.seeking) return;
    const int position = locate(state.published.trackMap, window());
    if (position < 0 && debug) printDiagnosis();
    if (position == state.published.bankOffset) return;
    state.published.bankOffset = position;
    state.published.changed();
    mirror.sendBankView();
}

void BankMap::printDiagnosis() const {
    log.print("[DIAG] locate=-1 win=" + std::to_string(state.published.winW) + " map(" +
              std::to_string(state.published.trackMap.size()) + ")=" + bracketed(state.published.trackMap) +
              " window=" + bracketed(window()));
}

void BankMap::resetForBankMove() {
    assert(runtime.onMain());
    for (std::size_t i = 0; i < stripCount; ++i) {
        forgetHistory(state.mirror.mute[i]);
        forgetHistory(state.mirror.rec[i]);
        state.automation.panSeekTarget[i].reset();
        state.automation.autoModeCache[i] = autoModeUnknown;
    }
}

} // namespace lumbrine
