// The Peripherals dialog of the simulated Pro Tools, opened and closed from outside.
#include "screen/pt_reconnector.h"
#include "simulator/testing/screen_bench.h"

namespace lumbrine {
namespace {

using namespace std::chrono_literals;

constexpr const char* done = "✓ Opened and closed the Peripherals dialog (PT will re-grab the MIDI ports)";

class ReconnectingTest : public ScreenBench {
protected:
    void TearDown() override { EXPECT_EQ(screen().liveHandles(), 0); }

    void startWithoutPorts(const ScreenOptions& options = {}) {
        SimulatorOptions all;
        all.portsLost = true;
        all.screen = options;
        startWith(all, numberedSession(3));
    }

    std::string run(bool japanese = false) {
        const Bilingual text(japanese);
        std::optional<PTReconnector::Outcome> outcome;
        const TimePoint begin = runtime.now();
        runtime.background(Priority::userInitiated, [&] { outcome = PTReconnector::run(screen(), runtime, text); });
        EXPECT_TRUE(runtime.runUntil([&] { return outcome.has_value(); }, 60s));
        lasted = runtime.now() - begin;
        return outcome ? outcome->line : "no end";
    }

    bool portsAreTaken() {
        runtime.runFor(1500ms);
        return proTools->snapshot().surfaces[0].pingsSent > 0;
    }

    Duration lasted{};
};

TEST_F(ReconnectingTest, TakesThePortsAndAnswersTheAlert) {
    startWithoutPorts();
    EXPECT_EQ(run(), done);
    // 0.4 s after the alert, two looks until the dialog is there, 0.6 s after the tab.
    EXPECT_EQ(lasted, 400ms + 400ms + 600ms);
    EXPECT_EQ(windows().size(), 2U);
    EXPECT_TRUE(portsAreTaken());
}

TEST_F(ReconnectingTest, KnowsAJapaneseProTools) {
    startWithoutPorts({.japanese = true});
    EXPECT_EQ(run(true), "✓ ペリフェラル画面を開閉しました（PT が MIDI ポートを掴み直します）");
    EXPECT_TRUE(portsAreTaken());
}

TEST_F(ReconnectingTest, UsesTheDialogThatIsOpen) {
    startWithoutPorts({.menuItem = false});
    proTools->rest();
    proTools->releasePorts();
    proTools->arrangeScreen([](SimulatedScreen& shown, TimePoint now) { shown.openPeripherals(now); });
    runtime.runFor(300ms);
    EXPECT_EQ(run(), done);
    EXPECT_EQ(lasted, 400ms + 600ms);
}

TEST_F(ReconnectingTest, LeavesOtherDialogsAlone) {
    startWithoutPorts();
    proTools->arrangeScreen([](SimulatedScreen& shown, TimePoint) { shown.showAlert({"The disk", "is too slow"}); });
    EXPECT_EQ(run(), done);
    EXPECT_EQ(windows().size(), 3U);
}

TEST_F(ReconnectingTest, GoesOnWithoutTheTab) {
    startWithoutPorts({.midiTab = false});
    EXPECT_EQ(run(), done);
    EXPECT_EQ(lasted, 400ms + 400ms);
    EXPECT_TRUE(portsAreTaken());
}

TEST_F(ReconnectingTest, LogsWhatItDoesNotFind) {
    startWithoutPorts({.menuItem = false});
    EXPECT_EQ(run(), "✗ \"Peripherals\" menu item not found (unexpected PT menu layout)");
    startWithoutPorts({.okButton = false});
    EXPECT_EQ(run(), "✗ OK button not found (the Peripherals dialog is left open; please press OK manually)");
    startWithoutPorts({.dialogOpens = false});
    EXPECT_EQ(run(), "✗ The Peripherals dialog did not open");
    EXPECT_EQ(lasted, 400ms + 25 * 200ms);
    screen().setRunning(false);
    EXPECT_EQ(run(), "✗ Pro Tools is not running");
    EXPECT_FALSE(portsAreTaken());
}

TEST_F(ReconnectingTest, WaitsForADialogThatOpensLateAndNotForEver) {
    startWithoutPorts({.dialogOpensAfter = 4800ms});
    EXPECT_EQ(run(), done);
    startWithoutPorts({.dialogOpensAfter = 4801ms});
    EXPECT_EQ(run(), "✗ The Peripherals dialog did not open");
}

TEST_F(ReconnectingTest, ReportsAnOutcomeOnAnUnreliableScreenInTime) {
    for (int seed = 1; seed <= 50; ++seed) {
        SimulatorOptions options;
        options.portsLost = true;
        options.seed = static_cast<std::uint64_t>(seed);
        options.screen = {.failOneIn = 12, .vanishOneIn = 20};
        startWith(options, numberedSession(3));
        const std::string outcome = run();
        EXPECT_TRUE(outcome.starts_with("✓") || outcome.starts_with("✗")) << outcome;
        EXPECT_LE(lasted, 5 * 400ms + 25 * 200ms + 600ms); // an alert that stays is answered five times
    }
}

TEST_F(ReconnectingTest, FindsItsWayThroughImmenseWindows) {
    startWithoutPorts({.furniture = 20'000});
    EXPECT_EQ(run(), done);
    EXPECT_TRUE(portsAreTaken());
}

} // namespace
} // namespace lumbrine
