// Owners come and go.
#include "model/testing/model_test.h"

namespace lumbrine {
namespace {

class OwnerWatchTest : public OwnedModelTest {
protected:
    void tick() { bench.run(400ms); }
    std::string description() { return bench.model->published().iosClientDesc; }
};

TEST_F(OwnerWatchTest, ATakeOverReleasesWhatTheOldOwnerHolds) {
    phone->send({0x01, 0x02, 0x03});
    phone->send({0x01, 0x02, 0x0E});
    settle();
    markAll();
    const auto other = bench.phone("192.168.1.8");
    other->send({0x01, 0x25});
    settle();
    EXPECT_THAT(bench.heardOn(bench.surfaceA), ElementsAre("0ms B0 0F 03", "0ms B0 2F 00"));
    EXPECT_THAT(bench.heardOn(bench.surfaceB), ElementsAre("0ms B0 0F 06", "0ms B0 2F 00"));
    EXPECT_THAT(bench.state().published.strips, testing::Each(testing::Field(&StripState::touched, false)));
}

TEST_F(OwnerWatchTest, WhatTheNewOwnerTouchesAtOnceStays) {
    phone->send({0x01, 0x02, 0x03});
    settle();
    const auto other = bench.phone("192.168.1.8");
    other->send({0x01, 0x25});
    other->send({0x01, 0x02, 0x03});
    settle();
    bench.mark();
    tick();
    EXPECT_THAT(bench.heardOn(bench.surfaceA), IsEmpty());
    EXPECT_TRUE(bench.state().published.strips[3].touched);
}

TEST_F(OwnerWatchTest, TwoChangesWithinATickLetGoTwice) {
    const auto other = bench.phone("192.168.1.8");
    phone->send({0x01, 0x02, 0x03});
    other->send({0x01, 0x25});
    other->send({0x01, 0x02, 0x04});
    phone->send({0x01, 0x25});
    settle();
    bench.run(400ms);
    EXPECT_THAT(bench.state().published.strips, testing::Each(testing::Field(&StripState::touched, false)));
    EXPECT_FALSE(bench.parts().surfaces.engine(SurfaceID::A).isDown(3, hui::touchPort));
    EXPECT_FALSE(bench.parts().surfaces.engine(SurfaceID::A).isDown(4, hui::touchPort));
}

TEST_F(OwnerWatchTest, AnOwnerThatStaysKeepsItsFaders) {
    phone->send({0x01, 0x02, 0x03});
    settle();
    bench.mark();
    for (int i = 0; i < 5; ++i) {
        sendNothing();
        tick();
    }
    EXPECT_THAT(bench.heardOn(bench.surfaceA), IsEmpty());
    EXPECT_TRUE(bench.state().published.strips[3].touched);
}

TEST_F(OwnerWatchTest, WhatASilentClientHoldsIsReleased) {
    phone->send({0x01, 0x02, 0x03});
    settle();
    bench.mark();
    bench.run(4999ms);
    EXPECT_TRUE(bench.state().published.strips[3].touched);
    EXPECT_THAT(bench.heardOn(bench.surfaceA), IsEmpty());
    bench.run(1ms); // the tick at 5000 ms
    EXPECT_FALSE(bench.state().published.strips[3].touched);
    EXPECT_THAT(bench.heardOn(bench.surfaceA), ElementsAre("5000ms B0 0F 03", "5000ms B0 2F 00"));
}

// ---- The description

TEST_F(OwnerWatchTest, TheOwnerIsNamed) {
    EXPECT_EQ(description(), "::ffff:192.168.1.7");
}

TEST_F(OwnerWatchTest, WaitingPhonesAreCounted) {
    const auto second = bench.phone("192.168.1.8");
    const auto third = bench.phone("192.168.1.9");
    second->send({0x01, 0x00});
    third->send({0x01, 0x00});
    tick();
    EXPECT_EQ(description(), "::ffff:192.168.1.7 (+2 waiting)");
}

TEST_F(OwnerWatchTest, WaitingPhonesAreCountedWhenTheOwnerHasGone) {
    const auto other = bench.phone("192.168.1.8");
    bench.run(5s);
    other->send({0x01, 0x00}); // refused: the owner is silent, but not for long enough
    bench.run(1s);
    EXPECT_EQ(description(), "(+1 waiting)");
}

TEST_F(OwnerWatchTest, TheDescriptionIsEmptyWhenNobodyIsThere) {
    bench.run(5800ms);
    EXPECT_EQ(description(), "");
}

TEST(OwnerWatchInJapanese, CountsWaitingPhones) {
    ModelWorld world;
    ModelBench bench(world, {.japanese = true});
    bench.start();
    const auto phone = bench.phone("192.168.1.7");
    const auto other = bench.phone("192.168.1.8");
    phone->send({0x01, 0x07, 0x00, 0x00});
    world.runtime.runUntilIdle();
    other->send({0x01, 0x00});
    bench.run(100ms);
    EXPECT_EQ(bench.model->published().iosClientDesc, "::ffff:192.168.1.7（他 1 台待機）");
}

} // namespace
} // namespace lumbrine
