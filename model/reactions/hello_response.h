// The answer to a client that says hello: a pong at once, then everything the receiver knows, to that client alone.
//
// The full state is hundreds of times as long as a hello: hellos get a pong each, but the state is sent at most once in
// `statePeriod`, after the last of them.
#pragma once

#include "model/bank/calibration.h"
#include "model/hands/automation_modes.h"
#include "model/mirror/client_endpoint.h"
#include "model/mirror/client_mirror.h"
#include "model/mirror/track_table.h"
#include "model/state/activity_log.h"

#include <atomic>
#include <string>
#include <string_view>

namespace lumbrine {

class HelloResponse {
public:
    static constexpr Duration statePeriod = seconds(0.25);

    struct Parts {
        ClientEndpoint& endpoint;
        ClientMirror& mirror;
        TrackTable& table;
        Calibration& calibration;
        AutomationModes& automation;
    };

    HelloResponse(const Jobs& jobs, const ReceiverState& state, ActivityLog& log, Parts parts);

    // Any thread.
    void pong(std::string_view key);

    // Claims the follow-up to a hello; false while another one is claimed and has not begun. Any thread.
    bool claimFollowUp() { return !claimed.exchange(true); }

    // Sends the state in full to the owner, as soon as the last time is long enough ago, then starts finding out what
    // is unknown. Main thread; a long session goes on in further jobs (TrackTable).
    void followUp();

private:
    void sendState();
    void logArrival();
    void fillGaps();

    const Jobs& jobs;
    const ReceiverState& state;
    ActivityLog& log;
    const Parts parts;
    std::atomic<bool> claimed{false};
    TimePoint nextStateAt = distantPast; // main thread
};

} // namespace lumbrine
