// The mute, solo and record LEDs: what is on, and what is flashing. HUI has no message for a flashing LED; Pro Tools
// switches it on and off, and edges that follow each other quickly are taken for one. The client is told "blinking"
// instead of every edge. Main thread only.
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

    SwitchTracker(Runtime& rt, ReceiverState& receiverState, ClientMirror& clientMirror, ActivityLog& activityLog);

    void muteLed(Strip strip, bool on);
    void recLed(Strip strip, bool on);

    // When the last solo of the session goes, so does the flashing of the mutes that it had caused.
    void soloLed(Strip strip, bool on);

private:
    bool noteEdge(FlashingLed& led, bool on, Duration hold);
    void endMuteBlinks();

    Runtime& runtime;
    ReceiverState& state;
    ClientMirror& mirror;
    ActivityLog& log;
};

} // namespace lumbrine
