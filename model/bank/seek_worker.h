// Bringing the surfaces to a wanted part of the session with bank and channel presses. The latest target wins: a
// stream of requests changes the goal of the one worker and never builds up a queue.
//
// The client is told of each step before Pro Tools has confirmed it. When the worker has arrived it looks at the
// displays and goes on from where they are, at most twice, should that be somewhere else.
#pragma once

#include "model/bank/surface_moves.h"
#include "model/hands/automation_modes.h"
#include "model/state/jobs.h"

#include <optional>

namespace lumbrine {

class SeekWorker {
public:
    static constexpr int maxCorrections = 2;

    struct Parts {
        SurfaceMoves& moves;
        BankMap& bankMap;
        ClientMirror& mirror;
        AutomationModes& automation;
    };

    SeekWorker(const Jobs& modelJobs, ReceiverState& receiverState, Parts otherParts);

    // Requests that the track with this session index come to strip 0, or as near as the session's end allows. Ignored
    // without Pro Tools, while a scan or a group operation has the surfaces, and when they show the whole session. Any
    // thread.
    void seekBank(int target);

private:
    struct Drive {
        int current;             // where the surfaces are by all that was pressed
        std::optional<int> last; // the target pressed for last; absent while there was none
        int corrections = 0;
    };

    void request(int target);
    bool hireWorker(int target) LUMBRINE_EXCLUDES(seekLock);

    // On a background thread
    void run();
    int startOffset() const;
    void travel(Drive& drive, BankLayout session);
    std::optional<int> nextTarget(Drive& drive, BankLayout session) LUMBRINE_EXCLUDES(seekLock);
    void step(Drive& drive, int target, BankLayout session);
    bool goesOn(Drive& drive) LUMBRINE_EXCLUDES(seekLock);
    void dropTarget() LUMBRINE_EXCLUDES(seekLock);

    // On the main thread
    void showProgress(int offset);
    void finish();

    const Jobs& jobs;
    ReceiverState& state;
    const Parts parts;

    Mutex seekLock;
    std::optional<int> seekTarget LUMBRINE_GUARDED_BY(seekLock);
    bool seekWorkerRunning LUMBRINE_GUARDED_BY(seekLock) = false;
};

} // namespace lumbrine
