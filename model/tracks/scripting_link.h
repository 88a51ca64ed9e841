// The model's link to Pro Tools' scripting service: the one client, the queue for its blocking calls, and whether they
// succeed.
#pragma once

#include "model/state/activity_log.h"
#include "model/state/jobs.h"
#include "model/state/receiver_platform.h"
#include "model/state/receiver_state.h"
#include "ptsl/ptsl_client.h"

#include <memory>
#include <utility>

namespace lumbrine {

class ScriptingLink {
public:
    ScriptingLink(const Jobs& jobs, ReceiverState& state, ActivityLog& log, const ReceiverPlatform& platform);

    // Queues `work(PTSLClient&)`, which may block for as long as its calls do. Any thread.
    template <typename Work>
    void onQueue(Work work) {
        jobs.onQueue(*ptslQueue, [this, work = std::move(work)]() mutable { work(ptsl); });
    }

    // The last track list came. Logs each change from failing to working. Main thread.
    void notePTSLSuccess();

    // A request failed. Logged once in the life of the program. Main thread.
    void notePTSLFailure(const PTSLFailure& error);

private:
    const Jobs& jobs;
    ReceiverState& state;
    ActivityLog& log;
    PTSLClient ptsl; // used on the queue alone
    std::unique_ptr<SerialQueue> ptslQueue;
};

} // namespace lumbrine
