// The navigation buttons: a seek where the position is known, the button itself where it is not.
#include "model/testing/banking_host.h"
#include "model/testing/model_test.h"

namespace lumbrine {
namespace {

class BankMovesTest : public ModelTest {
protected:
    BankMovesTest() {
        bench.parts().surfaces.startSurfaces();
        host.show();
        bench.setTrackMap(numbers(40), 0);
        state.published.huiConnected = true;
        state.lastAutoPollAll = world.runtime.now() + 1h; // no probes
        bench.run(2s);
        bench.mark();
    }

    void move(int kind) {
        bench.model->bankMove(kind);
        bench.run(2s);
    }

    ReceiverState& state = bench.state();
    BankingHost host{bench, numbers(40)};
};

TEST_F(BankMovesTest, MoveByAChannelOrByABank) {
    move(3);
    EXPECT_EQ(host.offset, 8);
    move(2);
    EXPECT_EQ(host.offset, 9);
    move(0);
    EXPECT_EQ(host.offset, 8);
    move(3);
    move(2);
    move(1);
    EXPECT_EQ(host.offset, 9);
}

TEST_F(BankMovesTest, AreSeeksWhereThePositionIsKnown) {
    bench.model->bankMove(3);
    EXPECT_TRUE(state.published.banksUsedBy == BankUser::seek);
}

TEST_F(BankMovesTest, MoveByTheWholeWindowOfTwoSurfaces) {
    state.published.winW = 16;
    host.deaf = true;
    bench.model->bankMove(3);
    bench.run(31ms);
    EXPECT_EQ(state.published.bankOffset, 16);
}

TEST_F(BankMovesTest, OfUnknownLengthKeepTheSurfacesUntilTheHostHasFollowed) {
    state.published.bankOffset = -1;
    host.deaf = true;
    bench.model->bankMove(3);
    bench.run(500ms);
    EXPECT_TRUE(bench.parts().queue.isClosed());
    host.scrollTo(8);
    bench.run(200ms);
    EXPECT_FALSE(bench.parts().queue.isClosed());
}

TEST_F(BankMovesTest, OfUnknownLengthKeepTheSurfacesForAsLongAsAPressMayTake) {
    bench.learnThatTheHostIsQuick();
    state.published.bankOffset = -1;
    host.deaf = true;
    bench.run(1s);
    bench.model->bankMove(3);
    bench.run(1099ms);
    EXPECT_TRUE(bench.parts().queue.isClosed());
    bench.run(100ms);
    EXPECT_FALSE(bench.parts().queue.isClosed());
}

TEST_F(BankMovesTest, ThreeQuickTapsGoThreeBanks) {
    for (int tap = 0; tap < 3; ++tap) {
        bench.model->bankMove(3);
        bench.run(20ms);
    }
    bench.run(3s);
    EXPECT_EQ(host.offset, 24);
    bench.model->bankMove(3);
    bench.run(250ms); // the surfaces are there, and the seek is about to look
    bench.model->bankMove(0);
    bench.run(3s);
    EXPECT_EQ(host.offset, 31);
}

TEST_F(BankMovesTest, ThreeQuickTapsGoThreeBanksWhereThePositionIsUnknown) {
    bench.setTrackMap({}, -1);
    for (int tap = 0; tap < 3; ++tap) {
        bench.model->bankMove(3);
        bench.run(20ms);
    }
    bench.run(300ms);
    EXPECT_EQ(host.offset, 24);
}

TEST_F(BankMovesTest, AreToldAsDroppedDuringAScan) {
    bench.parts().calibration.calibrateBanks(true);
    bench.run(1s);
    bench.takeLines();
    bench.model->bankMove(3);
    bench.parts().seekWorker.seekBank(3);
    bench.run(1s);
    EXPECT_THAT(bench.takeLines(), ElementsAre("✗ Dropped bank move: the surfaces were busy"));
}

TEST_F(BankMovesTest, StayWithinTheSession) {
    move(1);
    EXPECT_EQ(host.offset, 0);
    EXPECT_THAT(bench.heardOn(bench.surfaceA), IsEmpty());
}

TEST_F(BankMovesTest, PressTheButtonItselfWhereThePositionIsUnknown) {
    state.published.bankOffset = -1;
    state.published.strips[3].mode = 2;
    bench.model->bankMove(1);
    EXPECT_FALSE(state.published.banksUsedBy == BankUser::seek);
    EXPECT_EQ(state.published.strips[3].mode, autoModeUnknown); // at once
    bench.run(30ms);
    EXPECT_THAT(bench.heardOn(bench.surfaceA),
                ElementsAre("0ms B0 0F 0A", "0ms B0 2F 41", "30ms B0 0F 0A", "30ms B0 2F 01"));
}

TEST_F(BankMovesTest, PressTheButtonItselfWhereTheSessionFitsOrIsNotKnown) {
    for (const int tracks : {8, 0}) {
        bench.setTrackMap(numbers(tracks), tracks == 0 ? -1 : 0);
        bench.mark();
        bench.model->bankMove(2);
        bench.run(10ms);
        EXPECT_THAT(bench.heardOn(bench.surfaceA), ElementsAre("0ms B0 0F 0A", "0ms B0 2F 42"));
        bench.run(1s);
    }
}

TEST_F(BankMovesTest, AreFourInNumber) {
    state.published.bankOffset = -1;
    move(4);
    move(-1);
    EXPECT_THAT(bench.heardOn(bench.surfaceA), IsEmpty());
}

} // namespace
} // namespace lumbrine
