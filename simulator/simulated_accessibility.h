// The screen of the simulated Pro Tools behind the Accessibility seam, with the user's permission and with faults. Any
// thread.
#pragma once

#include "platform/api/accessibility.h"
#include "platform/api/runtime.h"
#include "simulator/seeded_random.h"
#include "simulator/simulated_screen.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace lumbrine {

class SimulatedAccessibility final : public Accessibility {
public:
    static constexpr std::int32_t processIdentifier = 4242;

    // Runs the given function on the screen under its lock, then returns. Does not run it while the program is stuck;
    // such a message goes unanswered, which takes `answerTime`.
    using OnScreen = std::function<void(const std::function<void(SimulatedScreen&, TimePoint now)>&)>;

    // Precondition: the options are valid (problemWith). `look` is for functions that change nothing,
    // `act` for the others.
    SimulatedAccessibility(Runtime& runtime, const ScreenOptions& options, std::uint64_t seed, OnScreen look,
                           OnScreen act);

    // ---- The user, and faults.

    void setTrusted(bool trusted) { trustGiven = trusted; }
    void setRunning(bool running) { programRuns = running; } // whether other programs find it running
    void setFaults(int failOneIn, int vanishOneIn);          // see ScreenOptions
    void rest();                                             // trusted, running, no faults

    // `observer` is called before each read with trust, on the reading thread, with the number of the read from 1.
    void beforeRead(std::function<void(std::uint64_t number)> observer);

    // `observer` is called with a description of each press and its effect, on the pressing thread. Set both observers
    // before the first read.
    void onPress(std::function<void(const std::string& what)> observer);

    // ---- Looking.

    std::uint64_t reads() const { return readCount; }
    int prompts() const { return promptCount; } // how often the user was asked for permission
    int liveHandles() const { return *handles; }

    // ---- For other programs.

    bool isTrusted() override { return trustGiven; }
    bool isTrustedOrPrompt() override;
    std::optional<std::int32_t> runningApplication(std::string_view bundleIdentifier) override;
    ElementHandle applicationElement(std::int32_t process) override;
    std::expected<std::vector<std::optional<AttributeValue>>, ScreenFailure>
    attributes(const ElementHandle& element, std::span<const std::string_view> names) override;
    bool perform(const ElementHandle& element, std::string_view action) override;

private:
    class Handle;

    bool happens(int oneIn) LUMBRINE_EXCLUDES(mutex);
    ElementHandle hold(const ScreenElement& element, bool vanishes);
    AttributeValue handOut(ScreenValue value);

    Runtime& runtime;
    const OnScreen look;
    const OnScreen act;
    std::function<void(std::uint64_t)> readObserver;
    std::function<void(const std::string&)> pressObserver;

    std::atomic<bool> trustGiven;
    std::atomic<bool> programRuns = true;
    std::atomic<std::uint64_t> readCount = 0;
    std::atomic<int> promptCount = 0;
    const std::shared_ptr<std::atomic<int>> handles = std::make_shared<std::atomic<int>>(0);

    std::atomic<int> failOneIn;
    std::atomic<int> vanishOneIn;
    Mutex mutex;
    SeededRandom chance LUMBRINE_GUARDED_BY(mutex);
};

} // namespace lumbrine
