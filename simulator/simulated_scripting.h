// The scripting service at work: takes requests from any thread, serves them one after another on a queue of the
// runtime, and has the faults that a caller cannot tell from a busy program.
#pragma once

#include "platform/api/runtime.h"
#include "simulator/scripting_service.h"
#include "simulator/scripting_setter.h"
#include "simulator/wire_faults.h"

#include <atomic>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lumbrine {

// What the whole program does, as far as its scripting service shows it.
struct ProgramState {
    TimePoint stuckUntil = distantPast; // it does nothing at all
    bool dialogOpen = false;
    TimePoint inProgressUntil = distantPast; // a session is being opened or saved
};

// A command that switches something on tracks, as it arrived.
struct ScriptingSetter {
    TimePoint at;
    std::int32_t command = 0;
    SetRequest request;
};

class SimulatedScripting {
public:
    // Called on the service's queue, and destroyed without a call when the service ends first.
    using Answer = std::function<void(ScriptingReply)>;

    // The options have no problem (problemWith).
    SimulatedScripting(Runtime& rt, const ScriptingOptions& chosen, std::uint64_t seed,
                       ScriptingService::EditSession edit, std::function<ProgramState()> programState);

    // The program has closed its last dialog.
    void dialogClosed();

    // ---- For the wires, from any thread.

    // See ScriptingService::answer for what a connection is.
    void ask(ScriptingRequest request, std::string connection, Answer answer);

    // What is to happen to their calls.
    WireFaults& wireFaults() { return faults; }

    // Says where the service can be reached; shown to people.
    void offeredOn(std::optional<std::uint16_t> newPort);

    // ---- Faults, from any thread.

    void refuseNext(int requests); // see ScriptingService
    void stall(Duration duration); // what comes meanwhile is served afterwards
    void restart();                // see ScriptingService
    void rest(); // no more of these, of the wire's, and of those that were chosen; what waits is served

    // ---- Looking, from any thread.

    std::optional<std::uint16_t> port() const;
    std::uint64_t arrivals() const { return arrived; } // requests so far
    std::uint64_t answers() const { return answered; } // and how many of them were answered

    // Whether or not something came of them; oldest first, the last thousand.
    std::vector<ScriptingSetter> setters() const LUMBRINE_EXCLUDES(mutex);

    // Nothing is answered from now on. For the owner; the wires are gone before.
    void end() { owned.reset(); }

private:
    struct Call {
        ScriptingRequest request;
        std::string connection;
        Answer answer;
    };

    void begin(Call call);
    void line(Call call);
    void serve();
    ScriptingReply replyTo(const Call& call, const ProgramState& state, TimePoint now);
    void note(const ScriptingRequest& request) LUMBRINE_EXCLUDES(mutex);

    Runtime& runtime;
    const ScriptingOptions options;
    const std::function<ProgramState()> program;
    WireFaults faults;
    std::atomic<int> offeredPort;
    std::atomic<std::uint64_t> arrived = 0;
    std::atomic<std::uint64_t> answered = 0;
    mutable Mutex mutex;
    std::deque<ScriptingSetter> switching LUMBRINE_GUARDED_BY(mutex);

    // The queue's own.
    ScriptingService service;
    SeededRandom chance;
    std::deque<Call> waiting;  // while nothing is served
    std::deque<Call> deferred; // answered already, and carried out once there is no dialog
    TimePoint stalledUntil = distantPast;
    bool resting = false;

    std::unique_ptr<SerialQueue> owned;
    SerialQueue& queue; // by which its own jobs post to it, also while it ends
};

} // namespace lumbrine
