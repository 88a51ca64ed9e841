// The mute, solo and record LEDs: which are on, and which flash. HUI has no message for a flashing LED: Pro Tools
// switches it on and off, so a run of quick edges is taken for flashing. The client is sent "blinking" instead of every
// edge. Main thread only.
#pragma once

#include "model/mirror/client_mirror.h"
#include "model/state/activity_log.h"
#include "model/state/receiver_state.h"

namespace lumbrine {

class SwitchTracker {
public:
    static constexpr Duration blinkDetect = seconds(1.5); // edges closer together than this are quick
    static constexpr Duration blinkHold = seconds(1.2);   // blinking for so long after a quick edge
    static constexpr Duration recOffHold = seconds(0.4);  // the same where a record LED went off

    SwitchTracker(Runtime& runtime, ReceiverState& state, ActivityLog& log, ClientMirror& mirror);

    void muteLed(Strip strip, bool on);
    void recLed(Strip strip, bool on);

    // When the last solo of the session goes off, the mutes that it made flash stop flashing.
    void soloLed(Strip strip, bool on);

private:
    bool noteEdge(FlashingLed& led, bool on, Duration hold);
    void endMuteBlinks();

    Runtime& runtime;
    ReceiverState& state;
    ActivityLog& log;
    ClientMirror& mirror;
};

} // namespace lumbrine
