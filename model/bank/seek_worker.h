// Bringing the surfaces to a wanted part of the session with bank and channel presses. The latest target wins: a
// stream of requests changes the goal of the one worker and never builds up a queue.
//
// The client is told of each step before Pro Tools has confirmed it. When the worker has arrived it looks at the
// displays and goes on from where they are, should that be somewhere else, until three corrections have brought it no
// nearer.
#pragma once

#include "model/bank/surface_moves.h"
#include "model/bank/track_capture.h"
#include "model/hands/automation_modes.h"
#include "model/hands/desk_queue.h"

#include <optional>
#include <vector>

namespace lumbrine {

class SeekWorker {
public:
    static constexpr int maxVainCorrections = 3;
    static constexpr std::size_t maxTaps = 8;

    struct Parts {
        DeskQueue& queue;
        SurfaceMoves& moves;
        BankMap& bankMap;
        TrackCapture& capture;
        ClientMirror& mirror;
        AutomationModes& automation;
        DroppedCommands& drops;
    };

    SeekWorker(const Jobs& jobs, ReceiverState& state, Parts parts);

    // Requests that the track with this session index come to strip 0, or as near as the session's end allows. Ignored
    // without Pro Tools and when the surfaces show the whole session; dropped while a scan or a walk has them. Any
    // thread. `owner`: absent for somebody at this computer.
    void seekBank(int target, std::optional<Ownership> owner = {});

    // The four navigation buttons: 0 channel back, 1 bank back, 2 channel forward, 3 bank forward; others do nothing. A
    // seek by that distance, from where the seek under way leads, when the position is known and the session is longer
    // than the surfaces; else the key itself. Any thread.
    void bankMove(int kind, std::optional<Ownership> owner = {});

private:
    struct Tap {
        int key;
        std::optional<Ownership> owner;
    };

    void request(int target, std::optional<Ownership> owner);
    bool hireWorker(int target, std::optional<Ownership> owner) LUMBRINE_EXCLUDES(seekLock);
    void move(int kind, std::optional<Ownership> owner);
    void tap(int kind, std::optional<Ownership> owner);
    int destination() LUMBRINE_EXCLUDES(seekLock);

    // On the desk's thread
    void run();
    void pressTaps();
    bool tapsWait() LUMBRINE_EXCLUDES(seekLock); // any thread
    int startOffset() const;
    std::optional<int> nextTap() LUMBRINE_EXCLUDES(seekLock);
    void dismiss() LUMBRINE_EXCLUDES(seekLock);
    void endWork() LUMBRINE_REQUIRES(seekLock);
    std::optional<int> wanted(BankLayout session) LUMBRINE_EXCLUDES(seekLock);
    bool stays(int target, BankLayout session) LUMBRINE_EXCLUDES(seekLock);
    bool isAskedForMore() LUMBRINE_EXCLUDES(seekLock);
    int step(int current, int target, BankLayout& session, bool isCorrection);

    // On the main thread
    void showProgress(int offset);
    void finish();

    const Jobs& jobs;
    ReceiverState& state;
    const Parts parts;

    Mutex seekLock;
    std::optional<int> seekTarget LUMBRINE_GUARDED_BY(seekLock);
    std::optional<int> lastTarget LUMBRINE_GUARDED_BY(seekLock); // of the worker, which may still have to arrive there
    std::optional<Ownership> seeker LUMBRINE_GUARDED_BY(seekLock);
    bool seekWorkerRunning LUMBRINE_GUARDED_BY(seekLock) = false;
    std::vector<Tap> taps LUMBRINE_GUARDED_BY(seekLock); // that wait
};

} // namespace lumbrine
