#include "model/testing/model_test.h"

namespace lumbrine {
namespace {

class SessionCaptureTest : public ModelTest {
protected:
    SessionCapture& capture = bench.parts().capture;
    ReceiverState& state = bench.state();
};

TEST_F(SessionCaptureTest, KeepsAFaderForTheTrackThatTheStripShows) {
    bench.setTrackMap({"a", "b", "c"}, 1);
    capture.captureSess(*Strip::of(1), 0.5);
    EXPECT_THAT(state.session.sessFaders, ElementsAre(std::nullopt, std::nullopt, 0.5));
    EXPECT_TRUE(state.session.fullTableDirty);
}

TEST_F(SessionCaptureTest, ChangesNothingForTheSameValue) {
    bench.setTrackMap({"a"}, 0);
    capture.captureSess(*Strip::of(0), 0.5);
    state.session.fullTableDirty = false;
    capture.captureSess(*Strip::of(0), 0.5);
    EXPECT_FALSE(state.session.fullTableDirty);
    capture.captureSess(*Strip::of(0), 0.6);
    EXPECT_TRUE(state.session.fullTableDirty);
}

TEST_F(SessionCaptureTest, KeepsNothingBehindTheLastTrack) {
    bench.setTrackMap({"a", "b"}, 1);
    capture.captureSess(*Strip::of(1), 0.5);
    EXPECT_FALSE(state.session.fullTableDirty);
}

TEST_F(SessionCaptureTest, KeepsNothingWhileThePositionIsNotSure) {
    bench.setTrackMap({"a"}, -1);
    capture.captureSess(*Strip::of(1), 0.5);
    state.published.bankOffset = 0;
    for (bool* moving : {&state.bank.seeking, &state.published.calibrating}) {
        *moving = true;
        capture.captureSess(*Strip::of(0), 0.5);
        *moving = false;
    }
    EXPECT_THAT(state.session.sessFaders, ElementsAre(std::nullopt));
    EXPECT_FALSE(state.session.fullTableDirty);
}

TEST_F(SessionCaptureTest, KeepsFadersDuringAGroupOperation) {
    bench.setTrackMap({"a"}, 0);
    state.bank.groupApplying = true;
    capture.captureSess(*Strip::of(0), 0.5);
    EXPECT_THAT(state.session.sessFaders, ElementsAre(0.5));
}

TEST_F(SessionCaptureTest, GivesEveryTrackItsNeutralAutomationAndPan) {
    bench.setTrackMap({"a", "b"}, 0);
    capture.ensureSessAutoPanSize();
    EXPECT_THAT(state.session.sessAutoModes, ElementsAre(0, 0));
    EXPECT_THAT(state.session.sessPanPos, ElementsAre(6, 6));
    EXPECT_THAT(state.session.sessPanCenter, ElementsAre(true, true));
    EXPECT_THAT(state.session.sessPanSide, ElementsAre(0, 0));
    EXPECT_THAT(state.session.sessPanKnown, ElementsAre(false, false));
}

TEST_F(SessionCaptureTest, ReplacesOnlyTheTablesOfAnotherLength) {
    bench.setTrackMap({"a", "b"}, 0);
    state.session.sessAutoModes = {1, 2};
    state.session.sessPanPos = {1, 2, 3};
    capture.ensureSessAutoPanSize();
    EXPECT_THAT(state.session.sessAutoModes, ElementsAre(1, 2));
    EXPECT_THAT(state.session.sessPanPos, ElementsAre(6, 6));
}

} // namespace
} // namespace lumbrine
