#include "simulator/simulated_scripting.h"

#include <algorithm>
#include <utility>

namespace lumbrine {

namespace {

constexpr int notOffered = -1;
constexpr std::size_t mostSetters = 1000;

} // namespace

SimulatedScripting::SimulatedScripting(Runtime& runtime, const ScriptingOptions& options, std::uint64_t seed,
                                       ScriptingService::EditSession edit, ScriptingService::NoteSwitch noteSwitch,
                                       std::function<ProgramState()> program)
    : runtime(runtime), options(options), program(std::move(program)), faults(options, seed + 3),
      offeredPort(notOffered), mutex(runtime),
      service(options, seed, std::move(edit), runtime.now(), std::move(noteSwitch)), chance(seed + 2),
      owned(runtime.serialQueue("simulated scripting service", Priority::normal)), queue(*owned) {}

void SimulatedScripting::ask(ScriptingRequest request, std::string connection, Answer answer) {
    ++arrived;
    note(request);
    Call call{std::move(request), std::move(connection), std::move(answer)};
    queue.postAfter(options.commandTime, [this, call = std::move(call)]() mutable { begin(std::move(call)); });
}

void SimulatedScripting::note(const ScriptingRequest& request) {
    auto setter = parseSetRequest(request.bodyJSON);
    if (!setter) return;
    const Lock lock(mutex);
    switching.push_back({runtime.now(), request.command, *std::move(setter)});
    if (switching.size() > mostSetters) switching.pop_front();
}

std::vector<ScriptingSetter> SimulatedScripting::setters() const {
    const Lock lock(mutex);
    return {switching.begin(), switching.end()};
}

void SimulatedScripting::begin(Call call) {
    const bool mayStall = options.stallOneIn > 0 && !resting;
    if (!mayStall || !chance.oneIn(static_cast<std::uint64_t>(options.stallOneIn))) return line(std::move(call));
    queue.postAfter(options.stallTime, [this, call = std::move(call)]() mutable { line(std::move(call)); });
}

void SimulatedScripting::line(Call call) {
    waiting.push_back(std::move(call));
    serve();
}

void SimulatedScripting::serve() {
    while (!waiting.empty()) {
        const TimePoint now = runtime.now();
        const ProgramState state = program();
        const TimePoint free = std::max(stalledUntil, state.stuckUntil);
        if (now < free) {
            queue.postAfter(free - now, [this] { serve(); });
            return;
        }
        if (state.dialogOpen && options.inDialog == DialogAnswer::silence) return; // dialogClosed continues
        const Call call = std::move(waiting.front());
        waiting.pop_front();
        ++answered;
        call.answer(replyTo(call, state, now));
    }
}

ScriptingReply SimulatedScripting::replyTo(const Call& call, const ProgramState& state, TimePoint now) {
    if (state.dialogOpen) {
        if (options.inDialog == DialogAnswer::deferral) deferred.push_back({call.request, call.connection, {}});
        return service.refusal(call.request);
    }
    if (options.answersInProgress && now < state.inProgressUntil) return service.inProgress(call.request);
    return service.answer(call.request, call.connection, now);
}

void SimulatedScripting::dialogClosed() {
    queue.post([this] {
        for (const Call& call : std::exchange(deferred, {}))
            service.answer(call.request, call.connection, runtime.now());
        serve();
    });
}

void SimulatedScripting::offeredOn(std::optional<std::uint16_t> newPort) {
    offeredPort = newPort ? *newPort : notOffered;
}

std::optional<std::uint16_t> SimulatedScripting::port() const {
    const int port = offeredPort;
    return port == notOffered ? std::nullopt : std::optional(static_cast<std::uint16_t>(port));
}

void SimulatedScripting::refuseNext(int requests) {
    queue.post([this, requests] { service.refuseNext(requests); });
}

void SimulatedScripting::stall(Duration duration) {
    queue.post([this, until = runtime.now() + duration] { stalledUntil = until; });
}

void SimulatedScripting::restart() {
    queue.post([this] { service.restart(runtime.now()); });
}

void SimulatedScripting::rest() {
    faults.rest();
    queue.post([this] {
        resting = true;
        stalledUntil = distantPast;
        service.rest();
        serve();
    });
}

} // namespace lumbrine
