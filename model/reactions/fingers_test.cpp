// Fingers on faders: repeated touches, and how soon a silent client is forgotten.
#include "model/testing/model_test.h"

namespace lumbrine {
namespace {

class FingersTest : public OwnedModelTest {
protected:
    void touch(Strip strip) {
        phone->send({0x01, 0x02, static_cast<std::uint8_t>(strip.index())});
        settle();
    }

    // As a client does it, the last time at that time from the origin.
    void touchEveryHalfSecond(Strip strip, Duration until) {
        touch(strip);
        for (Duration at = 500ms; at <= until; at += 500ms) {
            bench.run(500ms);
            touch(strip);
        }
        markAll();
    }

    void job() {
        bench.parts().surfaces.closeToHands();
        bench.parts().surfaces.openToHands();
        settle();
        bench.mark();
    }

    Lines onA() { return bench.heardOn(bench.surfaceA); }
    Lines onB() { return bench.heardOn(bench.surfaceB); }
    bool isTouched(Strip strip) { return bench.state().published.strip(strip).touched; }

    const Strip third = *Strip::of(2);
    const Strip onSecondSurface = *Strip::of(14);
};

TEST_F(FingersTest, OfAClientThatRepeatsTouchesAreReleasedAfter1500MillisecondsOfSilence) {
    touch(onSecondSurface);
    touchEveryHalfSecond(third, 1s);
    bench.run(1499ms);
    EXPECT_TRUE(isTouched(third));
    EXPECT_THAT(onA(), IsEmpty());
    bench.run(1ms);
    EXPECT_FALSE(isTouched(third));
    EXPECT_FALSE(isTouched(onSecondSurface));
    EXPECT_THAT(onA(), ElementsAre("1500ms B0 0F 02", "1500ms B0 2F 00"));
    EXPECT_THAT(onB(), ElementsAre("1500ms B0 0F 06", "1500ms B0 2F 00"));
    bench.run(5s);
    EXPECT_THAT(onA(), IsEmpty());
}

TEST_F(FingersTest, AreKeptForAsLongAsTheClientSaysAnything) {
    touchEveryHalfSecond(third, 500ms);
    for (int i = 0; i < 5; ++i) {
        bench.run(1499ms);
        sendNothing();
        settle();
    }
    EXPECT_THAT(onA(), IsEmpty());
    bench.run(1500ms);
    EXPECT_THAT(onA(), ElementsAre("8995ms B0 0F 02", "8995ms B0 2F 00"));
}

TEST_F(FingersTest, OfAClientThatRepeatsNoTouchAreReleasedAfter5Seconds) {
    touch(third);
    bench.run(751ms);
    touch(third); // its release was lost
    markAll();
    bench.run(4800ms);
    EXPECT_THAT(onA(), IsEmpty());
    bench.run(400ms); // a tick
    EXPECT_FALSE(isTouched(third));
}

TEST_F(FingersTest, AreNotRepeatedByANetworkThatDoublesDatagrams) {
    touch(third);
    bench.run(249ms);
    touch(third);
    markAll();
    bench.run(4700ms);
    EXPECT_THAT(onA(), IsEmpty());
}

TEST_F(FingersTest, AreTouchedAgainWhenTheClientIsBackInTime) {
    touchEveryHalfSecond(third, 500ms);
    bench.run(2s);
    onA();
    touch(third);
    EXPECT_THAT(onA(), ElementsAre("2000ms B0 0F 02", "2000ms B0 2F 40"));
    EXPECT_TRUE(isTouched(third));
}

TEST_F(FingersTest, AreReleasedAgainWhenTheClientThatWasBackFallsSilent) {
    touchEveryHalfSecond(third, 500ms);
    bench.run(2s);
    touch(third);
    onA();
    bench.run(1500ms);
    EXPECT_THAT(onA(), ElementsAre("3500ms B0 0F 02", "3500ms B0 2F 00"));
    EXPECT_FALSE(isTouched(third));
}

TEST_F(FingersTest, OfANewOwnerAreItsOwn) {
    touchEveryHalfSecond(third, 500ms);
    const auto other = bench.phone("192.168.1.8");
    other->send({0x01, 0x25});
    other->send({0x01, 0x02, 0x02});
    settle();
    bench.mark();
    bench.run(4500ms);
    EXPECT_THAT(onA(), IsEmpty());
    EXPECT_TRUE(isTouched(third));
}

// ---- Jobs that take the surfaces

TEST_F(FingersTest, ThatAJobHasMetDoNothingWhileTheyAreHeld) {
    touchEveryHalfSecond(third, 500ms);
    job();
    bench.run(500ms);
    touch(third);
    phone->send({0x01, 0x01, 0x02, 0x20, 0x00});
    settle();
    EXPECT_THAT(onA(), IsEmpty());
    phone->send({0x01, 0x03, 0x02});
    touch(third);
    EXPECT_THAT(onA(), ElementsAre("500ms B0 0F 02", "500ms B0 2F 40"));
}

TEST_F(FingersTest, ThatAJobHasMetWhileTheClientWasSilentDoNothingWhenItIsBack) {
    touchEveryHalfSecond(third, 500ms);
    bench.run(1500ms);
    job();
    bench.run(500ms);
    touch(third);
    EXPECT_THAT(onA(), IsEmpty());
}

TEST_F(FingersTest, OfAClientThatRepeatsNoTouchAreNewWithEachTouch) {
    touch(third);
    job();
    bench.run(1s);
    touch(third);
    EXPECT_THAT(onA(), ElementsAre("1000ms B0 0F 02", "1000ms B0 2F 40"));
}

} // namespace
} // namespace lumbrine
