// What the LEDs of AUTO keys tell, and what the receiver asks for all the same.
#include "model/hands/auto_leds.h"
#include "model/testing/model_test.h"

namespace lumbrine {
namespace {

using enum AutoLedColour;

constexpr std::uint8_t read = 1;
constexpr std::uint8_t touch = 2;
constexpr std::uint8_t latch = 3;
constexpr std::uint8_t write = 4;
constexpr std::uint8_t off = 5;
constexpr std::uint8_t trimTouch = 10;

class AutoLedsTest : public testing::Test {
protected:
    void show(AutoLedColour colour) { leds.shown(strip, colour, now); }
    void answer(std::uint8_t mode) { leds.answered(strip, mode, now); }
    bool confirms(std::uint8_t mode) const { return leds.confirms(strip, mode, now); }
    bool contradicts(std::uint8_t mode) const { return leds.contradicts(strip, mode, now); }
    void pass(Duration time) { now += time; }

    void flash(AutoLedColour one, AutoLedColour other) {
        for (int i = 0; i < 4; ++i) {
            show(one);
            pass(500ms);
            show(other);
            pass(500ms);
        }
    }

    AutoLeds leds;
    const Strip strip = *Strip::of(3);
    const Strip another = *Strip::of(4);
    TimePoint now = TimePoint{} + 100s;
};

TEST_F(AutoLedsTest, TellNothingBeforeTheyHaveAgreedWithAnAnswer) {
    EXPECT_FALSE(confirms(read));
    show(green);
    EXPECT_FALSE(confirms(read));
    EXPECT_FALSE(contradicts(write));
    answer(read);
    EXPECT_TRUE(confirms(read));
    EXPECT_TRUE(contradicts(write));
}

TEST_F(AutoLedsTest, TellEachModeByItsColour) {
    for (const auto& [colour, mode] : {std::pair(green, read), {orange, touch}, {orange, latch}, {red, write}}) {
        show(colour);
        pass(2s);
        answer(mode);
        EXPECT_TRUE(confirms(mode)) << int{mode};
    }
    show(dark);
    pass(2s);
    answer(off);
    EXPECT_TRUE(confirms(off));
}

TEST_F(AutoLedsTest, StandForTheWritingModeWhileTheyFlash) {
    flash(orange, dark);
    answer(touch);
    EXPECT_TRUE(confirms(touch));
    flash(orange, green);
    answer(trimTouch);
    EXPECT_TRUE(confirms(trimTouch));
    show(orange);
    show(dark);
    pass(1499ms);
    EXPECT_TRUE(confirms(trimTouch));
    pass(1ms);
    EXPECT_TRUE(contradicts(trimTouch));
}

TEST_F(AutoLedsTest, ThatAreDarkAreBelievedBesideALitOne) {
    show(dark);
    answer(off);
    EXPECT_FALSE(confirms(off));
    leds.shown(another, green, now);
    leds.answered(another, read, now);
    answer(off);
    EXPECT_TRUE(confirms(off));
}

TEST_F(AutoLedsTest, AreBelievedNoMoreOnceOneStandsStillBesideAnotherAnswer) {
    show(green);
    leds.shown(another, green, now);
    answer(read);
    leds.answered(another, touch, now); // the LED may be on its way
    EXPECT_TRUE(confirms(read));
    pass(1500ms);
    leds.answered(another, touch, now);
    EXPECT_FALSE(confirms(read));
    EXPECT_FALSE(contradicts(write));
}

TEST_F(AutoLedsTest, DoNotTellTouchFromLatchAndTheEndOfTrim) {
    show(green);
    answer(read);
    pass(1h);
    EXPECT_TRUE(confirms(read));
    show(orange);
    answer(touch);
    pass(29999ms);
    EXPECT_TRUE(confirms(touch));
    pass(1ms);
    EXPECT_FALSE(confirms(touch));
    EXPECT_FALSE(contradicts(touch));
    answer(latch);
    EXPECT_TRUE(confirms(latch));
}

TEST_F(AutoLedsTest, OfASurfaceThatHasGoneTellNothing) {
    show(green);
    answer(read);
    leds.forget(SurfaceID::B);
    EXPECT_TRUE(confirms(read));
    leds.forget(SurfaceID::A);
    EXPECT_FALSE(confirms(read));
}

} // namespace
} // namespace lumbrine
