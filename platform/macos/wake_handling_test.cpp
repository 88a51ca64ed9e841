#include "platform/macos/wake_handling.h"
#include "platform/virtual/virtual_runtime.h"

#include <optional>

namespace lumbrine {
namespace {

using Times = std::vector<double>;

class WakeHandlingTest : public ::testing::Test {
protected:
    double now() { return inSeconds(runtime.now() - TimePoint{}); }

    VirtualRuntime runtime;
    Times lookedAt;
    Times announcedAt;
    std::vector<double> changes; // the times at which the address changes
    std::optional<WakeHandling> handling{
        std::in_place, runtime,
        WakeHandling::Actions{.readAddress =
                                  [this] {
                                      lookedAt.push_back(now());
                                      const bool changed = !changes.empty() && changes.front() <= now();
                                      if (changed) changes.erase(changes.begin());
                                      return changed;
                                  },
                              .announceAgain = [this] { announcedAt.push_back(now()); }}};
};

TEST_F(WakeHandlingTest, DoesNothingUntilTheComputerHasWoken) {
    handling->willSleep();
    runtime.runFor(seconds(60));
    EXPECT_TRUE(lookedAt.empty());
    EXPECT_TRUE(announcedAt.empty());
}

TEST_F(WakeHandlingTest, AnnouncesAtOnceAndLooksForHalfAMinute) {
    handling->didWake();
    runtime.runFor(seconds(600));
    EXPECT_EQ(lookedAt, (Times{0, 1, 3, 10, 30}));
    EXPECT_EQ(announcedAt, Times{0});
}

TEST_F(WakeHandlingTest, AnnouncesAgainWhenTheNetworkIsBackWithAnotherAddress) {
    changes = {0, 2, 25};
    handling->didWake();
    runtime.runFor(seconds(600));
    EXPECT_EQ(announcedAt, (Times{0, 3, 30}));
}

TEST_F(WakeHandlingTest, StopsLookingWhenTheComputerGoesBackToSleep) {
    handling->didWake();
    runtime.runFor(seconds(2));
    handling->willSleep();
    runtime.runFor(seconds(600));
    EXPECT_EQ(lookedAt, (Times{0, 1}));
}

TEST_F(WakeHandlingTest, BeginsAfreshWithEachWaking) {
    handling->didWake();
    runtime.runFor(seconds(2));
    handling->didWake();
    runtime.runFor(seconds(600));
    EXPECT_EQ(lookedAt, (Times{0, 1, 2, 3, 5, 12, 32}));
    EXPECT_EQ(announcedAt, (Times{0, 2}));
}

TEST_F(WakeHandlingTest, MayGoWhileLooksArePlanned) {
    handling->didWake();
    handling.reset();
    runtime.runFor(seconds(600));
    EXPECT_EQ(lookedAt, Times{0});
}

} // namespace
} // namespace lumbrine
