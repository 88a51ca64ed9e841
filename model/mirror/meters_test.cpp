// Meters fall and are streamed.
#include "model/testing/model_test.h"

namespace lumbrine {
namespace {

TEST(Meters, KeepsALevelFor180MillisecondsAndThenLowersItByOneForEachStep) {
    ModelWorld world;
    Meters meters(world.runtime);
    meters.show(*Strip::of(2), 1, 12);
    world.runtime.runFor(180ms);
    EXPECT_EQ(meters.fall()[5], 12);
    world.runtime.runFor(1ms);
    for (int level = 11; level >= 0; --level)
        EXPECT_EQ(meters.fall()[5], level);
    EXPECT_EQ(meters.fall()[5], 0);
}

TEST(Meters, HoldsALevelAnewEachTimeItIsShown) {
    ModelWorld world;
    Meters meters(world.runtime);
    meters.show(*Strip::of(0), 0, 5);
    world.runtime.runFor(180ms);
    meters.show(*Strip::of(0), 0, 5);
    world.runtime.runFor(180ms);
    EXPECT_EQ(meters.fall()[0], 5);
}

TEST(Meters, TakesAnyLevelAboveTwelveForTwelve) {
    ModelWorld world;
    Meters meters(world.runtime);
    meters.show(*Strip::of(15), 1, 13);
    meters.show(*Strip::of(15), 0, 15);
    EXPECT_EQ(meters.fall()[31], 12);
    EXPECT_EQ(meters.fall()[30], 12);
}

TEST(Meters, FallAlsoWhileNobodyCalls) {
    ModelWorld world;
    Meters meters(world.runtime);
    meters.show(*Strip::of(0), 0, 12);
    world.runtime.runFor(Meters::hold + 14 * Meters::step);
    EXPECT_EQ(meters.fall()[0], 0);
}

TEST(Meters, RestASecondAfterTheLastLevelUntilTheNext) {
    ModelWorld world;
    Meters meters(world.runtime);
    EXPECT_TRUE(meters.atRest());
    EXPECT_FALSE(meters.show(*Strip::of(0), 0, 0));
    EXPECT_TRUE(meters.show(*Strip::of(0), 0, 1));
    EXPECT_FALSE(meters.show(*Strip::of(1), 0, 1));
    world.runtime.runFor(999ms);
    EXPECT_FALSE(meters.show(*Strip::of(0), 0, 0));
    EXPECT_FALSE(meters.atRest());
    world.runtime.runFor(1ms);
    EXPECT_TRUE(meters.atRest());
    EXPECT_TRUE(meters.show(*Strip::of(0), 0, 1));
}

class MeterStepTest : public OwnedModelTest {
protected:
    // A level on a strip that no test looks at.
    void keepAwake() {
        bench.surfaceA.send({0xA0, 0x03, 0x01});
        settle();
    }

    Lines levelsNow() {
        phone->tape.clear();
        bench.run(17ms);
        Lines messages = bench.heardBy(*phone, 0x11);
        return messages;
    }
};

TEST_F(MeterStepTest, StreamsTheShownLevelsSixtyTimesASecond) {
    bench.surfaceA.send({0xA0, 0x00, 0x07}); // strip 0, left
    bench.surfaceA.send({0xA0, 0x07, 0x1C}); // strip 7, right
    settle();
    phone->tape.clear();
    bench.run(500ms);
    keepAwake();
    bench.run(501ms);
    const Lines messages = bench.heardBy(*phone, 0x11);
    EXPECT_THAT(messages, testing::SizeIs(60));
    EXPECT_THAT(messages.front(), testing::EndsWith("01 11 07 00 00 00 00 00 00 00 00 00 00 00 00 00 00 0C"));
}

TEST_F(MeterStepTest, ALevelIsGoneTwelveFramesAfterItsHold) {
    bench.surfaceA.send({0xA0, 0x00, 0x0C});
    bench.run(180ms + 12 * Meters::step + 1ms);
    EXPECT_THAT(levelsNow().front(), testing::HasSubstr(" 01 11 00 00"));
}

TEST_F(MeterStepTest, StreamsSixteenStripsOfTheWiderWindow) {
    bench.state().published.winW = 16;
    bench.surfaceB.send({0xA0, 0x07, 0x13});
    settle();
    EXPECT_THAT(levelsNow().front(),
                testing::EndsWith("01 11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
                                  "00 00 00 00 00 03"));
}

TEST_F(MeterStepTest, StreamsNothingMoreASecondAfterTheLastLevel) {
    keepAwake();
    bench.run(900ms);
    EXPECT_THAT(levelsNow(), testing::Not(IsEmpty()));
    bench.run(500ms); // a tick comes after the second
    EXPECT_THAT(levelsNow(), IsEmpty());
    keepAwake();
    EXPECT_THAT(levelsNow(), testing::SizeIs(1));
}

TEST_F(MeterStepTest, WakesTheMainThreadOnlyWhileThereIsALevelToSee) {
    const auto ticksWithin = [this](Duration time) {
        const int before = world.runtime.ticks;
        bench.run(time);
        return world.runtime.ticks - before;
    };
    EXPECT_EQ(ticksWithin(2s), 5); // with a client
    keepAwake();
    EXPECT_GT(ticksWithin(1s), 60);
    bench.run(6s);
    keepAwake();
    EXPECT_EQ(ticksWithin(2s), 5); // without one
}

TEST_F(MeterStepTest, StreamsNothingWhileTheBanksMove) {
    keepAwake();
    for (const BankUser user : {BankUser::seek, BankUser::scan, BankUser::walk}) {
        bench.state().published.banksUsedBy = user;
        EXPECT_THAT(levelsNow(), IsEmpty());
    }
    bench.state().published.banksUsedBy.reset();
    EXPECT_THAT(levelsNow(), testing::SizeIs(1));
}

TEST_F(MeterStepTest, StreamsNothingToAnOwnerThatHasFallenSilent) {
    bench.run(5100ms);
    keepAwake();
    ASSERT_FALSE(bench.state().published.iosConnected);
    ASSERT_TRUE(bench.parts().endpoint.liveOwnerKey());
    EXPECT_THAT(levelsNow(), IsEmpty());
}

TEST_F(MeterStepTest, StreamsNothingWithoutAClientButMetersFall) {
    bench.run(6s);
    bench.surfaceA.send({0xA0, 0x00, 0x0C});
    settle();
    EXPECT_THAT(levelsNow(), IsEmpty());
    bench.run(1s);
    EXPECT_EQ(bench.parts().meters.fall()[0], 0);
}

} // namespace
} // namespace lumbrine
