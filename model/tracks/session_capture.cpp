#include "model/tracks/session_capture.h"

#include <cassert>

namespace lumbrine {

namespace {

constexpr int ringMiddle = 6;

template <typename Table, typename Value>
void restartUnlessOfSize(Table& table, std::size_t size, Value value) {
    if (table.size() != size) table.assign(size, value);
}

} // namespace

SessionCapture::SessionCapture(Runtime& rt, ReceiverState& receiverState) : runtime(rt), state(receiverState) {}

void SessionCapture::captureSess(Strip strip, double value) {
    assert(runtime.onMain());
    const int offset = state.published.bankOffset;
    if (offset < 0 || state.bank.seeking || state.published.calibrating) return;
    const std::size_t track = static_cast<std::size_t>(offset) + strip.slot();
    auto& faders = state.session.sessFaders;
    if (track >= faders.size() || faders[track] == value) return;
    faders[track] = value;
    state.session.fullTableDirty = true;
}

void SessionCapture::ensureSessAutoPanSize() {
    assert(runtime.onMain());
    SessionTable& session = state.session;
    const std::size_t size = state.published.trackMap.size();
    restartUnlessOfSize(session.sessAutoModes, size, autoModeUnknown);
    restartUnlessOfSize(session.sessPanPos, size, ringMiddle);
    restartUnlessOfSize(session.sessPanCenter, size, true);
    restartUnlessOfSize(session.sessPanSide, size, std::uint8_t{0});
    restartUnlessOfSize(session.sessPanKnown, size, false);
}

} // namespace lumbrine
