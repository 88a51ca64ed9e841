#include "remote/script_runner.h"

#include "remote/words.h"

#include <utility>

namespace lumbrine::remote {
namespace {

bool beginAlike(const std::string& a, const std::string& b) {
    return wordsOf(a).front() == wordsOf(b).front();
}

} // namespace

std::string noAnswer(Duration time, const Bilingual& text) {
    return text("nothing answered within " + inWords(time), inWords(time) + " 以内に応答がありませんでした");
}

ScriptRunner::ScriptRunner(Runtime& runtime, Script script, Bilingual text, std::function<void(const Bytes&)> send)
    : runtime(runtime), script(std::move(script)), text(text), send(std::move(send)) {}

void ScriptRunner::start() {
    after(script.timeout, [this] {
        const std::string time = inWords(script.timeout);
        end(script.needsControl ? text("another client stayed in control, or nothing answered, for " + time,
                                       time + " の間、別のクライアントが操作中か、応答がありませんでした")
                                : noAnswer(script.timeout, text));
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
    const std::string last = lastOfKind.empty() ? text("nothing of the kind came", "該当する行はありませんでした")
                                                : text("the last was: ", "最後の行: ") + lastOfKind;
    const std::string refusal = linkLine.empty() || linkLine == "state connected" ? "" : "; " + linkLine;
    const std::string time = inWords(script.timeout);
    const std::string& wanted = expectation.text();
    return text("not met within " + time + ": ", time + " 以内に満たされませんでした: ") + wanted + " (" + last +
           refusal + ")";
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
