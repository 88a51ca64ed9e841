// Which side of stereo pans is shown, and closing in on a pan position by V-Pot clicks.
#include "model/testing/model_test.h"

#include <algorithm>

namespace lumbrine {
namespace {

class PanSeekerTest : public OwnedModelTest {
protected:
    void seek(std::uint8_t strip, std::uint8_t target) {
        phone->send({0x01, 0x09, strip, target});
        settle();
    }

    // The clicks of one burst, all alike: "63 x 0ms B0 43 41"; more than one kind is an error.
    std::string burst(HostEnd& surface) {
        settle();
        const Lines clicks = bench.heardOn(surface);
        if (clicks.empty()) return "none";
        EXPECT_THAT(clicks, testing::Each(clicks.front()));
        return std::to_string(clicks.size()) + " x " + clicks.front();
    }

    ReceiverState& state = bench.state();
};

TEST_F(PanSeekerTest, GoesMostOfTheWayAtOnceAndThenInSmallSteps) {
    state.published.strips[3].pan[0].position = 2;
    seek(3, 9);
    EXPECT_EQ(burst(bench.surfaceA), "63 x 0ms B0 43 41");
    bench.run(34ms);
    EXPECT_EQ(burst(bench.surfaceA), "none");
    bench.run(1ms);
    EXPECT_EQ(burst(bench.surfaceA), "3 x 35ms B0 43 41");
    bench.run(35ms);
    EXPECT_EQ(burst(bench.surfaceA), "3 x 70ms B0 43 41");
    bench.surfaceA.ring(3, 9, false);
    bench.run(100ms);
    EXPECT_EQ(burst(bench.surfaceA), "none");
    EXPECT_FALSE(state.published.strips[3].panSeek);
}

TEST_F(PanSeekerTest, TurnsLeftForALowerPosition) {
    state.published.strips[9].pan[0].position = 6;
    seek(9, 5);
    EXPECT_EQ(burst(bench.surfaceB), "9 x 0ms B0 41 01");
}

TEST_F(PanSeekerTest, TurnsBackWhenItHasGoneTooFar) {
    state.published.strips[0].pan[0].position = 4;
    seek(0, 6);
    EXPECT_EQ(burst(bench.surfaceA), "18 x 0ms B0 40 41");
    bench.surfaceA.ring(0, 8, false);
    bench.run(35ms);
    EXPECT_EQ(burst(bench.surfaceA), "3 x 35ms B0 40 01");
}

TEST_F(PanSeekerTest, IsDoneWhereItStands) {
    state.published.strips[0].pan[0].position = 6;
    seek(0, 6);
    bench.run(100ms);
    EXPECT_EQ(burst(bench.surfaceA), "none");
    EXPECT_FALSE(state.published.strips[0].panSeek);
}

TEST_F(PanSeekerTest, LooksAtTheShownSide) {
    state.published.panRight = true;
    state.published.strips[0].pan[0].position = 1;
    state.published.strips[0].pan[1].position = 10;
    seek(0, 11);
    EXPECT_EQ(burst(bench.surfaceA), "9 x 0ms B0 40 41");
}

TEST_F(PanSeekerTest, GivesUpAfter41Steps) {
    state.published.strips[0].pan[0].position = 1;
    seek(0, 11);
    bench.run(39 * 35ms);
    EXPECT_THAT(bench.heardOn(bench.surfaceA), testing::SizeIs(90 + 39 * 3));
    bench.run(35ms);
    EXPECT_EQ(burst(bench.surfaceA), "3 x 1400ms B0 40 41");
    EXPECT_EQ(state.published.strips[0].panSeek.value().steps, 41);
    bench.run(35ms);
    EXPECT_EQ(burst(bench.surfaceA), "none");
    EXPECT_FALSE(state.published.strips[0].panSeek);
}

TEST_F(PanSeekerTest, IsGivenUpAfterTwoSeconds) {
    state.published.strips[0].pan[0].position = 1;
    seek(0, 11);
    EXPECT_EQ(burst(bench.surfaceA), "90 x 0ms B0 40 41");
    EXPECT_EQ(state.published.strips[0].panSeek.value().until - world.runtime.now(), 2s);
    state.published.strips[0].panSeek->until = world.runtime.now() + 35ms; // as when the machine sleeps
    bench.run(35ms);
    EXPECT_EQ(burst(bench.surfaceA), "none");
    EXPECT_FALSE(state.published.strips[0].panSeek);
}

TEST_F(PanSeekerTest, GoesForANewTargetInPlaceOfTheOldOne) {
    state.published.strips[3].pan[0].position = 2;
    seek(3, 9);
    EXPECT_EQ(burst(bench.surfaceA), "63 x 0ms B0 43 41");
    bench.run(10ms);
    seek(3, 5);
    EXPECT_EQ(burst(bench.surfaceA), "27 x 10ms B0 43 41");
    bench.run(34ms);
    EXPECT_EQ(burst(bench.surfaceA), "none");
    bench.run(1ms);
    EXPECT_EQ(burst(bench.surfaceA), "3 x 45ms B0 43 41");
    bench.run(39 * 35ms);
    EXPECT_THAT(bench.heardOn(bench.surfaceA), testing::SizeIs(39 * 3)); // its 41st step is the last
    bench.run(35ms);
    EXPECT_EQ(burst(bench.surfaceA), "none");
    EXPECT_FALSE(state.published.strips[3].panSeek);
}

TEST_F(PanSeekerTest, TakesPositions1To11Only) {
    state.published.strips[0].pan[0].position = 6;
    for (const std::uint8_t target : Bytes{0, 12, 255}) {
        seek(0, target);
        EXPECT_EQ(burst(bench.surfaceA), "none");
        EXPECT_FALSE(state.published.strips[0].panSeek);
    }
    seek(0, 1);
    EXPECT_EQ(burst(bench.surfaceA), "45 x 0ms B0 40 01");
    seek(0, 11);
    EXPECT_EQ(burst(bench.surfaceA), "45 x 0ms B0 40 41");
}

TEST_F(PanSeekerTest, TakesStrips0To15Only) {
    seek(16, 5);
    seek(255, 5);
    EXPECT_EQ(burst(bench.surfaceA), "none");
    EXPECT_EQ(burst(bench.surfaceB), "none");
}

TEST_F(PanSeekerTest, EndsWhenTheBanksMove) {
    state.published.strips[0].pan[0].position = 1;
    seek(0, 11);
    EXPECT_EQ(burst(bench.surfaceA), "90 x 0ms B0 40 41");
    bench.parts().bankMap.resetForBankMove();
    bench.run(100ms);
    EXPECT_EQ(burst(bench.surfaceA), "none");
}

// ---- The side

class PanModeTest : public OwnedModelTest {};

TEST_F(PanModeTest, IsToldAndLoggedWhenItChanges) {
    Pan& pan = bench.parts().pan;
    pan.setPanMode(true);
    pan.setPanMode(true);
    EXPECT_THAT(heard(0x15), ElementsAre("0ms 01 15 01"));
    EXPECT_TRUE(bench.model->published().panRight);
    pan.setPanMode(false);
    EXPECT_THAT(heard(0x15), ElementsAre("0ms 01 15 00"));
    EXPECT_FALSE(bench.model->published().panRight);
    EXPECT_THAT(bench.takeLines(), ElementsAre("← Pan mode: Pan Right", "← Pan mode: Pan Left"));
}

TEST(PanModeInJapanese, IsLogged) {
    ModelWorld world;
    ModelBench bench(world, {.japanese = true});
    bench.parts().pan.setPanMode(true);
    bench.parts().pan.setPanMode(false);
    EXPECT_THAT(bench.takeLines(), ElementsAre("← パンモード: Pan Right(右)", "← パンモード: Pan Left(左)"));
}

} // namespace
} // namespace lumbrine
