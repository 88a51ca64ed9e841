// The answer to a client that says hello: a pong at once, then everything the receiver knows, to that client alone.
//
// The full state is expensive: a burst of hellos from one client gets a pong each but one reply, begun after the last.
#pragma once

#include "model/bank/calibration.h"
#include "model/hands/automation_modes.h"
#include "model/mirror/client_endpoint.h"
#include "model/mirror/client_mirror.h"
#include "model/mirror/track_table.h"
#include "model/state/activity_log.h"

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
    };

    HelloResponse(Runtime& runtime, const ReceiverState& state, ActivityLog& log, Parts parts);

    // Any thread.
    void pong(std::string_view key);

    // Claims the follow-up to a hello; false while another one to that client is claimed and has not begun. Any thread.
    bool claimFollowUp(std::string_view key);

    // Sends the state in full, then starts finding out what is unknown. Main thread; a long session goes on in further
    // jobs (TrackTable).
    void followUp(const std::string& key);

private:
    void logArrival();
    void fillGaps();

    const ReceiverState& state;
    ActivityLog& log;
    const Parts parts;

    Mutex awaitedLock;
    std::set<std::string, std::less<>> awaited LUMBRINE_GUARDED_BY(awaitedLock); // follow-ups that have not begun
};

} // namespace lumbrine
