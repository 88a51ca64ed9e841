#include "simulator/led_flasher.h"

namespace lumbrine {
namespace {

TEST(LEDFlasher, RunsFromTheFirstThingThatFlashesToTheLast) {
    LEDFlasher flasher(seconds(0.5), seconds(0.25));
    const TimePoint start{seconds(10)};
    EXPECT_FALSE(flasher.advance(start, false));
    EXPECT_EQ(flasher.nextDeadline(), TimePoint::max());

    EXPECT_TRUE(flasher.advance(start, true));
    EXPECT_TRUE(flasher.isLit());
    EXPECT_EQ(flasher.nextDeadline(), start + seconds(0.5));
    EXPECT_FALSE(flasher.advance(start + seconds(0.499), true));
    EXPECT_TRUE(flasher.advance(start + seconds(0.5), true));
    EXPECT_FALSE(flasher.isLit());
    EXPECT_FALSE(flasher.advance(start + seconds(0.749), true));
    EXPECT_TRUE(flasher.advance(start + seconds(0.75), true));
    EXPECT_TRUE(flasher.isLit());

    EXPECT_FALSE(flasher.advance(start + seconds(0.8), false));
    EXPECT_EQ(flasher.nextDeadline(), TimePoint::max());
}

TEST(LEDFlasher, CatchesUpInOneStepWhenItWasHeldUp) {
    LEDFlasher flasher(seconds(0.5), seconds(0.5));
    flasher.advance(TimePoint{}, true);
    EXPECT_FALSE(flasher.advance(TimePoint{seconds(1.0)}, true)); // off and on again: as it was
    EXPECT_TRUE(flasher.isLit());
    EXPECT_EQ(flasher.nextDeadline(), TimePoint{seconds(1.5)});
}

} // namespace
} // namespace lumbrine
