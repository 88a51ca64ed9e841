#include "model/hands/pan_mode.h"

#include <cassert>

namespace lumbrine {

PanMode::PanMode(Runtime& rt, ReceiverState& receiverState, ClientMirror& clientMirror, ActivityLog& activityLog,
                 Bilingual bilingual)
    : runtime(rt), state(receiverState), mirror(clientMirror), log(activityLog), text(bilingual) {}

void PanMode::setPanMode(bool right) {
    assert(runtime.onMain());
    if (right == state.automation.panRightMode) return;
    state.automation.panRightMode = right;
    state.published.panRight = right;
    mirror.sendPanMode();
    log.appendLog(text("← Pan mode: ", "← パンモード: ") +
                  (right ? text("Pan Right", "Pan Right(右)") : text("Pan Left", "Pan Left(左)")));
    state.published.changed();
}

} // namespace lumbrine
