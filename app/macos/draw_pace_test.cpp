#include "app/macos/draw_pace.h"
#include "platform/virtual/virtual_runtime.h"

#include <optional>

namespace lumbrine {
namespace {

class DrawPaceTest : public ::testing::Test {
protected:
    VirtualRuntime runtime;
    int drawn = 0;
    std::optional<DrawPace> pace{std::in_place, runtime, [this] { ++drawn; }};
};

TEST_F(DrawPaceTest, DrawsAFirstChangeAtOnceThoughNotFromWithin) {
    pace->changed();
    EXPECT_EQ(drawn, 0);
    runtime.runUntilIdle();
    EXPECT_EQ(drawn, 1);
}

TEST_F(DrawPaceTest, DrawsOnceForManyChanges) {
    for (int i = 0; i < 100; ++i)
        pace->changed();
    runtime.runFor(seconds(1));
    EXPECT_EQ(drawn, 1);
}

TEST_F(DrawPaceTest, DrawsThirtyTimesASecondAtMost) {
    for (int i = 0; i < 2000; ++i) {
        pace->changed();
        runtime.runFor(seconds(0.001));
    }
    EXPECT_GE(drawn, 59);
    EXPECT_LE(drawn, 61);
}

TEST_F(DrawPaceTest, DrawsTheLastChangeToo) {
    pace->changed();
    runtime.runFor(seconds(0.01));
    pace->changed();
    runtime.runFor(seconds(0.02));
    EXPECT_EQ(drawn, 1);
    runtime.runFor(seconds(0.01));
    EXPECT_EQ(drawn, 2);
}

TEST_F(DrawPaceTest, DrawsNothingWhileNothingChanges) {
    runtime.runFor(seconds(10));
    EXPECT_EQ(drawn, 0);
}

TEST_F(DrawPaceTest, MayGoWithADrawingPlanned) {
    pace->changed();
    pace.reset();
    runtime.runFor(seconds(1));
    EXPECT_EQ(drawn, 0);
}

} // namespace
} // namespace lumbrine
