// Runs a script: sends, waits for what is expected, waits for a while, step after step.
//
// An expectation looks at what was heard since the last `send`, and since what met the expectation before it; so two
// expectations in a row are met by two messages in that order.
#pragma once

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

    // How long an expectation, and the receiver's first answer, may take.
    Duration timeout = seconds(2.0);

    // Begins only once this client is in control, not already when the receiver has answered at all.
    bool needsControl = false;
};

// Main thread only.
class ScriptRunner {
public:
    // Once, for the end: the failure in words, empty when all went as expected. Must not destroy the runner.
    std::function<void(const std::string& failure)> onEnd;

    ScriptRunner(Runtime& rt, Script scriptToRun, std::function<void(const Bytes&)> sender);

    // From now on the receiver has the time-out to answer. Once.
    void start();

    // A line for each message and each change of the link (remote/message_line.h), as it comes. The script begins a
    // moment after the first one, so that the answer to the hello is not taken for the answer to the first command.
    void hear(const std::string& line);

    static constexpr Duration settling = seconds(0.1);

    // What was heard and not looked for yet; older lines are forgotten.
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
    const std::function<void(const Bytes&)> send;
    Phase phase = Phase::waitingForAnswer;
    std::size_t at = 0; // the step that runs
    bool begun = false; // whether the step that runs has set its clock
    bool waited = false;
    std::deque<std::string> heard;
    std::string linkLine;                                  // the last "state ..."
    std::string lastOfKind;                                // the last line that began like the one that is expected
    std::shared_ptr<int> clock = std::make_shared<int>(0); // which `after` is the valid one; gone with the runner
};

} // namespace lumbrine::remote
