// Runs the steps of a script one after another: sends a command, waits for an expected line, or waits for a time.
//
// An expectation checks the lines received since the last `send`, and after the line that met the previous expectation.
// So two expectations in a row are met by two messages in this order.
#pragma once

#include "base/bilingual.h"
#include "base/bytes.h"
#include "platform/api/runtime.h"
#include "remote/expectation.h"

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace lumbrine::remote {

struct SendStep {
    Bytes datagram;
};
struct ExpectStep {
    Expectation expectation;
};
struct WaitStep {
    Duration duration;
};
using ScriptStep = std::variant<SendStep, ExpectStep, WaitStep>;

struct Script {
    std::vector<ScriptStep> steps;

    // The longest time for each expectation and for the receiver's first answer.
    Duration timeout = seconds(2.0);

    // When true, the script begins when this client is in control; when false, at the first answer of the receiver.
    bool needsControl = false;
};

// What is said when no receiver has answered for that long.
std::string noAnswer(Duration time, const Bilingual& text);

// Main thread only.
class ScriptRunner {
public:
    // Called once at the end, with a description of the failure, which is empty on success. Must not destroy the
    // runner.
    std::function<void(const std::string& failure)> onEnd;

    // `text`: for the description of the failure.
    ScriptRunner(Runtime& runtime, Script script, Bilingual text, std::function<void(const Bytes&)> send);

    // Starts the time-out for the receiver's first answer. Call once.
    void start();

    // Call with the line of each message and of each change of the link (remote/message_line.h). The script begins
    // `settling` after the first one, so that the answer to the hello is not taken for an answer to the first command.
    void hear(const std::string& line);

    static constexpr Duration settling = seconds(0.1);

    // The most lines kept for later expectations; older ones are dropped.
    static constexpr std::size_t maxHeard = 10'000;

private:
    enum class Phase { waitingForAnswer, settling, running, ended };

    void goOn();
    bool run(const SendStep& step);
    bool run(const ExpectStep& step);
    bool run(const WaitStep& step);
    std::string failureOf(const Expectation& expectation) const;
    void end(const std::string& failure);
    void after(Duration delay, std::function<void()> job);

    Runtime& runtime;
    const Script script;
    const Bilingual text;
    const std::function<void(const Bytes&)> send;
    Phase phase = Phase::waitingForAnswer;
    std::size_t at = 0; // the current step
    bool begun = false; // the current step has started its time-out or its wait
    bool waited = false;
    std::deque<std::string> heard;
    std::string linkLine;                                  // the last "state ..." line
    std::string lastOfKind;                                // the last line with the first word of the expectation
    std::shared_ptr<int> clock = std::make_shared<int>(0); // number of the valid `after`; expires with the runner
};

} // namespace lumbrine::remote
