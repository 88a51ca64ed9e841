// Keeping the last fader value that Pro Tools showed of each track.
#include "model/testing/model_test.h"
#include "model/testing/session_columns.h"

namespace lumbrine {
namespace {

class FaderCaptureTest : public ModelTest {
protected:
    // What strip i shows from now on.
    void show(int i, double value) { bench.parts().feedback.faderFeedback(*Strip::of(i), value); }

    std::vector<std::optional<double>> kept() { return column(state.published.session, &Track::fader); }

    ReceiverState& state = bench.state();
};

TEST_F(FaderCaptureTest, KeepsAFaderForTheTrackThatTheStripShows) {
    bench.setTrackMap({"a", "b", "c"}, 1);
    show(1, 0.5);
    EXPECT_THAT(kept(), ElementsAre(std::nullopt, std::nullopt, 0.5));
    EXPECT_TRUE(state.fullTableDirty);
}

TEST_F(FaderCaptureTest, ChangesNothingForTheSameValue) {
    bench.setTrackMap({"a"}, 0);
    show(0, 0.5);
    state.fullTableDirty = false;
    show(0, 0.5);
    EXPECT_FALSE(state.fullTableDirty);
    show(0, 0.6);
    EXPECT_TRUE(state.fullTableDirty);
}

TEST_F(FaderCaptureTest, KeepsNothingBeyondTheLastTrack) {
    bench.setTrackMap({"a", "b"}, 1);
    show(1, 0.5);
    EXPECT_FALSE(state.fullTableDirty);
}

TEST_F(FaderCaptureTest, KeepsNothingWhileThePositionIsNotSure) {
    bench.setTrackMap({"a"}, -1);
    show(1, 0.5);
    state.published.bankOffset = 0;
    for (const BankUser user : {BankUser::seek, BankUser::scan}) {
        state.published.banksUsedBy = user;
        show(0, 0.5);
    }
    EXPECT_THAT(kept(), ElementsAre(std::nullopt));
    EXPECT_FALSE(state.fullTableDirty);
}

TEST_F(FaderCaptureTest, KeepsFadersDuringAWalk) {
    bench.setTrackMap({"a"}, 0);
    state.published.banksUsedBy = BankUser::walk;
    show(0, 0.5);
    EXPECT_THAT(kept(), ElementsAre(0.5));
}

} // namespace
} // namespace lumbrine
