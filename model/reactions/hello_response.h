// The answer to a client that says hello: a pong at once, then everything the receiver knows, to that client alone.
//
// Everything is a lot. Of hellos that come faster than the main thread can answer them, each has its pong, and all of
// one client that wait have one answer, which begins after the last of them.
#pragma once

#include "base/bilingual.h"
#include "model/bank/calibration.h"
#include "model/hands/automation_modes.h"
#include "model/mirror/client_endpoint.h"
#include "model/mirror/client_mirror.h"
#include "model/mirror/track_table.h"
#include "model/state/activity_log.h"

#include <functional>
#include <set>
#include <string>
#include <string_view>

namespace lumbrine {

class HelloResponse {
public:
    struct Parts {
        ClientEndpoint& endpoint;
        ClientMirror& mirror;
        TrackTable& table;
        Calibration& calibration;
        AutomationModes& automation;
        ActivityLog& log;
    };

    HelloResponse(Runtime& rt, const ReceiverState& receiverState, Parts otherParts, Bilingual bilingual);

    // Any thread.
    void pong(std::string_view key);

    // That a client has said hello; false when a follow-up to it that has not begun is on its way. Any thread.
    bool calls(std::string_view key);

    // The state in full, then whatever the receiver does not know and could find out now. Main thread; a long session
    // goes on in further jobs (TrackTable).
    void followUp(const std::string& key);

private:
    void logArrival();
    void sendShown();
    void sendSession();
    void fillGaps();

    const ReceiverState& state;
    const Parts parts;
    const Bilingual text;

    Mutex awaitedLock;
    std::set<std::string, std::less<>> awaited LUMBRINE_GUARDED_BY(awaitedLock); // follow-ups that have not begun
};

} // namespace lumbrine
