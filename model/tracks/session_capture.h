// Keeping in the session table what the surfaces showed of a track, for when it is no longer shown. Main thread only.
#pragma once

#include "model/state/receiver_state.h"
#include "platform/api/runtime.h"

namespace lumbrine {

class SessionCapture {
public:
    SessionCapture(Runtime& rt, ReceiverState& receiverState);

    // A fader value that Pro Tools reported. Only while it is known which track the strip shows.
    void captureSess(Strip strip, double value);

    // Gives the automation and pan tables one entry for each track of the map; a table of another length starts anew.
    void ensureSessAutoPanSize();

private:
    [[maybe_unused]] Runtime& runtime; // for assertions
    ReceiverState& state;
};

} // namespace lumbrine
