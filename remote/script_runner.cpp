#include "remote/script_runner.h"

#include "remote/words.h"

#include <utility>

namespace lumbrine::remote {
namespace {

bool beginAlike(const std::string& a, const std::string& b) {
    return wordsOf(a).front() == wordsOf(b).front();
}

} // namespace

ScriptRunner::ScriptRunner(Runtime& runtime, Script script, std::function<void(const Bytes&)> send)
    : runtime(runtime), script(std::move(script)), send(std::move(send)) {}

void ScriptRunner::start() {
    after(script.timeout, [this] {
        end(script.needsControl
                ? "another client stayed in control, or nothing answered, for " + inWords(script.timeout)
                : "nothing answered within " + inWords(script.timeout));
    });
}

void ScriptRunner::hear(const std::string& line) {
    if (phase == Phase::ended) return;
    if (line.starts_with("state ")) linkLine = line;
    heard.push_back(line);
    if (heard.size() > maxHeard) heard.pop_front();
    if (phase == Phase::waitingForAnswer && (!script.needsControl || line == "state connected")) {
        phase = Phase::settling;
        after(settling, [this] {
            phase = Phase::running;
            goOn();
        });
    } else if (phase == Phase::running) {
        goOn();
    }
}

void ScriptRunner::goOn() {
    while (at < script.steps.size()) {
        if (!std::visit([this](const auto& step) { return run(step); }, script.steps[at])) return;
        ++at;
        begun = false;
    }
    end("");
}

bool ScriptRunner::run(const SendStep& step) {
    heard.clear();
    send(step.datagram);
    return true;
}

bool ScriptRunner::run(const ExpectStep& step) {
    const Expectation& expectation = step.expectation;
    if (!std::exchange(begun, true)) {
        lastOfKind.clear();
        after(script.timeout, [this, &expectation] { end(failureOf(expectation)); });
    }
    while (!heard.empty()) {
        const std::string line = std::move(heard.front());
        heard.pop_front();
        if (expectation.fits(line)) return true;
        if (beginAlike(expectation.text(), line)) lastOfKind = line;
    }
    return false;
}

bool ScriptRunner::run(const WaitStep& step) {
    if (!std::exchange(begun, true)) {
        waited = false;
        after(step.duration, [this] {
            waited = true;
            goOn();
        });
    }
    return waited;
}

std::string ScriptRunner::failureOf(const Expectation& expectation) const {
    const std::string last = lastOfKind.empty() ? "nothing of the kind came" : "the last was: " + lastOfKind;
    const std::string refusal = linkLine.empty() || linkLine == "state connected" ? "" : "; " + linkLine;
    return "not met within " + inWords(script.timeout) + ": " + expectation.text() + " (" + last + refusal + ")";
}

void ScriptRunner::end(const std::string& failure) {
    if (std::exchange(phase, Phase::ended) == Phase::ended) return;
    ++*clock;
    heard.clear();
    if (onEnd) onEnd(failure);
}

// Only the last scheduled job runs, and none after its step is over.
void ScriptRunner::after(Duration delay, std::function<void()> job) {
    runtime.postMainAfter(delay, [valid = ++*clock, current = std::weak_ptr<int>(clock), job = std::move(job)] {
        const auto now = current.lock();
        if (now && *now == valid) job();
    });
}

} // namespace lumbrine::remote
