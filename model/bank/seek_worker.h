// Bringing the surfaces to a wanted part of the session with bank and channel presses. The latest target wins: a
// stream of requests changes the goal of the one worker and never builds up a queue.
//
// The client is told of each step before Pro Tools has confirmed it. When the worker has arrived it looks at the
// displays and goes on from where they are, at most twice, should that be somewhere else.
#pragma once

#include "model/bank/surface_moves.h"
#include "model/hands/automation_modes.h"

#include <optional>

namespace lumbrine {

class SeekWorker {
public:
    static constexpr int maxCorrections = 2;

    struct Parts {
        SurfaceDesk& desk;
        SurfaceMoves& moves;
        BankMap& bankMap;
        ClientMirror& mirror;
        AutomationModes& automation;
    };

    SeekWorker(const Jobs& jobs, ReceiverState& state, Parts parts);

    // Requests that the track with this session index come to strip 0, or as near as the session's end allows. Ignored
    // without Pro Tools, while a scan or a walk has the surfaces, and when they show the whole session. Any thread.
    void seekBank(int target);

    // The four navigation buttons: 0 channel back, 1 bank back, 2 channel forward, 3 bank forward; others do nothing. A
    // seek by that distance when the position is known and the session is longer than the surfaces; else the key
    // itself. Any thread.
    void bankMove(int kind);

private:
    void request(int target);
    bool hireWorker(int target) LUMBRINE_EXCLUDES(seekLock);
    void move(int kind);

    // On a background thread
    void run();
    int startOffset() const;
    void dismiss() LUMBRINE_EXCLUDES(seekLock);
    std::optional<int> wanted(BankLayout session) LUMBRINE_EXCLUDES(seekLock);
    bool stays(int target, BankLayout session) LUMBRINE_EXCLUDES(seekLock);
    int step(int current, int target, BankLayout session);

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
