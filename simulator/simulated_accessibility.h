// The simulated Pro Tools as other programs get at it: its screen behind the Accessibility seam, with the permission
// that the user gives, and with the faults of such an access. Any thread may call.
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

    // Runs the given function on the screen, guarded, before it returns; not at all while the program is stuck.
    using OnScreen = std::function<void(const std::function<void(SimulatedScreen&, TimePoint now)>&)>;

    // The options have no problem (problemWith). `look` is for functions that change nothing, `act` for the others.
    SimulatedAccessibility(Runtime& rt, const ScreenOptions& options, std::uint64_t seed, OnScreen lookAtScreen,
                           OnScreen actOnScreen);

    // ---- The user, and faults.

    void setTrusted(bool trusted) { trustGiven = trusted; }
    void setRunning(bool running) { programRuns = running; } // as far as other programs can see
    void setFaults(int failOneIn, int vanishOneIn);          // see ScreenOptions
    void rest();                                             // trusted, running, no faults

    // Told before each read that is made with trust, with its number from 1, on the reading thread.
    void beforeRead(std::function<void(std::uint64_t number)> observer);

    // Told what was pressed and what that did, on the pressing thread. Both observers before anything is read.
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
    std::optional<AttributeValue> attribute(const ElementHandle& element, std::string_view name) override;
    bool perform(const ElementHandle& element, std::string_view action) override;

private:
    class Handle;

    bool happens(int oneIn) LUMBRINE_EXCLUDES(mutex);
    ElementHandle hold(const ScreenElement& element, bool vanishes);
    AttributeValue handOut(ScreenValue value);

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
