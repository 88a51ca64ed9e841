// Which side of stereo pans the V-Pots show, as far as the receiver knows. Main thread only.
#pragma once

#include "base/bilingual.h"
#include "model/mirror/client_mirror.h"
#include "model/state/activity_log.h"

namespace lumbrine {

class PanMode {
public:
    PanMode(Runtime& rt, ReceiverState& receiverState, ClientMirror& clientMirror, ActivityLog& activityLog,
            Bilingual bilingual);

    // Records and reports a side; presses nothing. Nothing happens when it is the side already.
    void setPanMode(bool right);

private:
    [[maybe_unused]] Runtime& runtime; // for assertions
    ReceiverState& state;
    ClientMirror& mirror;
    ActivityLog& log;
    const Bilingual text;
};

} // namespace lumbrine
