// The running scripting service: accepts requests on any thread, executes them one after another on a queue of the
// runtime, and has the faults that look like a busy program to a caller.
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

// The state of the whole program, as far as it affects the scripting service.
struct ProgramState {
    TimePoint stuckUntil = distantPast; // until then the program does nothing
    bool dialogOpen = false;
    TimePoint inProgressUntil = distantPast; // until then a session is being opened or saved
};

// A received command that sets a switch on tracks.
struct ScriptingSetter {
    TimePoint at;
    std::int32_t command = 0;
    SetRequest request;
};

class SimulatedScripting {
public:
    // Called on the service's queue. When the service ends first, it is destroyed without a call.
    using Answer = std::function<void(ScriptingReply)>;

    // Precondition: the options are valid (problemWith).
    SimulatedScripting(Runtime& runtime, const ScriptingOptions& options, std::uint64_t seed,
                       ScriptingService::EditSession edit, ScriptingService::NoteSwitch noteSwitch,
                       std::function<ProgramState()> program);

    // Call when the program has closed its last dialog.
    void dialogClosed();

    // ---- For wires. Any thread.

    // For `connection`, see ScriptingService::answer.
    void ask(ScriptingRequest request, std::string connection, Answer answer);

    // The faults of the calls on wires.
    WireFaults& wireFaults() { return faults; }

    // Sets the port that is shown to the user.
    void offeredOn(std::optional<std::uint16_t> newPort);

    // ---- Faults. Any thread.

    void refuseNext(int requests); // see ScriptingService
    void stall(Duration duration); // requests that arrive meanwhile are executed afterwards
    void restart();                // see ScriptingService
    void rest(); // ends all faults, also those of the wires and of the options; waiting requests are executed

    // ---- Looking. Any thread.

    std::optional<std::uint16_t> port() const;
    std::uint64_t arrivals() const { return arrived; } // the number of requests so far
    std::uint64_t answers() const { return answered; } // the number of answered requests so far

    // The last thousand setters, oldest first, successful or not.
    std::vector<ScriptingSetter> setters() const LUMBRINE_EXCLUDES(mutex);

    // Stops answering. For the owner, after the wires are destroyed.
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

    // Used on the queue only.
    ScriptingService service;
    SeededRandom chance;
    std::deque<Call> waiting;  // not executed yet
    std::deque<Call> deferred; // answered, but to be executed when the dialog is closed
    TimePoint stalledUntil = distantPast;
    bool resting = false;

    std::unique_ptr<SerialQueue> owned;
    SerialQueue& queue; // for posts by its own jobs, which also happen while `owned` is being destroyed
};

} // namespace lumbrine
