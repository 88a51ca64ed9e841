// Whose turn it is at the surfaces. Everything that takes them away from what the client was shown, or holds their AUTO
// keys, is a job here, and one runs at a time: two would spoil each other's work.
//
// The most urgent job that waits goes first. A job that moves the banks closes the surfaces to the client's hands until
// it has given them back: what was touched is released, and what the client asks of a strip meanwhile waits for the
// end, shortly (HandAct). Walks and scans do not begin under a finger.
//
// Main thread, unless said otherwise.
#pragma once

#include "client_link/ownership.h"
#include "model/hands/surfaces.h"
#include "model/state/dropped_commands.h"
#include "model/state/jobs.h"
#include "model/state/receiver_state.h"

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace lumbrine {

struct DeskJob {
    // The most urgent first. All but modes and polls move the banks.
    enum class Kind { tap, seek, mode, walk, scan, poll };

    Kind kind;
    CommandName name = {};                 // of a client's wish
    int subject = 0;                       // a job takes the place of one of its kind and subject that still waits
    std::optional<Ownership> owner = {};   // absent: the receiver itself
    TimePoint until = TimePoint::max();    // dropped then, if it has not begun
    std::function<bool()> begin = {};      // when its turn has come; false when there is nothing left to do
    std::function<void()> work = {};       // on the desk's own thread
    std::function<void()> end = {};        // after the surfaces have been given back
    std::function<void()> dropped = [] {}; // in place of the other three
};

// What the client asked of a track while the surfaces were closed to hands.
struct HandAct {
    static constexpr Duration patience = seconds(1.0);

    CommandName name;
    TrackOnStrip track;
    Asked asked;
    std::function<bool(Strip)> perform; // gets the strip that shows the track by then; false when it came to nothing
};

class DeskQueue {
public:
    static constexpr Duration handsLook = seconds(0.02); // between looks for what nobody announces
    static constexpr std::size_t maxActs = 32;

    DeskQueue(const Jobs& jobs, ReceiverState& state, Surfaces& surfaces, DroppedCommands& drops);

    void request(DeskJob job);

    void performLater(HandAct act);

    // A job that moves the banks has the surfaces.
    bool isClosed() const { return closed; }

    // How long a command that acts on one strip may wait for its turn.
    Duration patience() const;

    // Somebody else is in control: work for others that is under way ends. Any thread.
    void ownerIs(Ownership owner);

    // The same, and what others have asked for is dropped.
    void newOwner(Ownership owner);

    // Whether a job goes on that somebody has asked for. Any thread.
    bool isWanted(const std::optional<Ownership>& owner) const { return !owner || owner->number >= current; }

private:
    void consider();
    void considerAt(TimePoint at);
    void drop(const DeskJob& job, DropReason reason);
    void dropOld();
    void dropActs(const std::function<bool(const HandAct&)>& isDropped, DropReason reason);
    void performActs();
    std::optional<DeskJob> next();
    bool mustWait(const DeskJob& job) const;
    void run(DeskJob job);
    void over(const DeskJob& job);

    void closeSurfaces(std::optional<BankUser> user);
    void openSurfaces();

    const Jobs& jobs;
    ReceiverState& state;
    Surfaces& surfaces;
    DroppedCommands& drops;
    std::vector<DeskJob> waiting; // in the order in which they came
    std::vector<HandAct> acts;
    bool running = false;
    bool closed = false;
    std::optional<TimePoint> nextLook;
    std::atomic<std::uint64_t> current{0}; // number of the newest ownership
    std::unique_ptr<SerialQueue> thread;   // goes first: its job may still use the rest
};

} // namespace lumbrine
