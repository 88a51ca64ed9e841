// Our reading and pressing of Pro Tools' screen, with the simulated Pro Tools that runs on this Mac as an application:
// what the system makes of its windows. Skipped without it, and where the user does not allow the test to read them.
#include "platform/macos/accessibility_ax.h"
#include "platform/posix/real_runtime.h"
#include "platform/posix/run_loop.h"
#include "screen/pt_reconnector.h"
#include "screen/pt_track_list.h"

namespace lumbrine {
namespace {

class SimulatedWindowsTest : public testing::Test {
protected:
    void SetUp() override {
        if (!accessibility.runningApplication("com.avid.ProTools")) GTEST_SKIP() << "no simulated Pro Tools runs";
        if (!accessibility.isTrusted()) GTEST_SKIP() << "this program may not read other programs' screens";
    }
    ~SimulatedWindowsTest() override { runtime.shutDown(); }

    // On another thread than the main thread, as in the receiver.
    void inBackground(const std::function<void()>& work) {
        runtime.background(Priority::normal, [&] {
            work();
            loop.stop();
        });
        loop.run();
    }

    RunLoop loop;
    RealRuntime runtime{loop};
    AccessibilityAX accessibility;
};

TEST_F(SimulatedWindowsTest, TheTrackListHasTheShownTracksOfTheSession) {
    std::expected<Snapshot, NoReading> list = std::unexpected(NoReading::noAnswer);
    inBackground([&] { list = PTTrackList::read(accessibility, runtime); });
    ASSERT_TRUE(list);
    EXPECT_GE(list->names.size(), 20U);
}

TEST_F(SimulatedWindowsTest, ThePeripheralsDialogOpensAndCloses) {
    PTReconnector::Outcome outcome;
    inBackground([&] { outcome = PTReconnector::run(accessibility, runtime, Bilingual(false)); });
    EXPECT_EQ(outcome.line, "✓ Opened and closed the Peripherals dialog (PT will re-grab the MIDI ports)");
}

} // namespace
} // namespace lumbrine
