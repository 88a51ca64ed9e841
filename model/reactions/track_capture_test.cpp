// Keeping the last fader value that Pro Tools showed of each track.
#include "model/testing/model_test.h"
#include "model/testing/session_columns.h"

namespace lumbrine {
namespace {

class TrackCaptureTest : public ModelTest {
protected:
    // What strip i shows from now on; names are still.
    void show(int i, double value) {
        bench.parts().feedback.faderFeedback(*Strip::of(i), value);
        bench.run(TrackCapture::stillness);
    }

    void setSession(const std::vector<std::string>& names, int offset) {
        bench.setTrackMap(names, offset);
        for (std::size_t slot = 0; offset >= 0 && slot < stripCount; ++slot) {
            const std::size_t track = static_cast<std::size_t>(offset) + slot;
            state.published.strips[slot].name = track < names.size() ? names[track] : "";
        }
    }

    void name(int i, std::string_view text) { bench.parts().feedback.trackNameShown(*Strip::of(i), text); }

    void select(int i, bool on) { bench.parts().feedback.ledShown(SurfaceID::A, i, hui::selectPort, on); }

    std::vector<std::optional<double>> kept() { return column(state.published.session, &Track::fader); }

    ReceiverState& state = bench.state();
};

TEST_F(TrackCaptureTest, KeepsAFaderForTheTrackThatTheStripShows) {
    setSession({"a", "b", "c"}, 1);
    show(1, 0.5);
    EXPECT_THAT(kept(), ElementsAre(std::nullopt, std::nullopt, 0.5));
    EXPECT_TRUE(state.fullTableDirty);
}

TEST_F(TrackCaptureTest, ChangesNothingForTheSameValue) {
    setSession({"a"}, 0);
    show(0, 0.5);
    state.fullTableDirty = false;
    show(0, 0.5);
    EXPECT_FALSE(state.fullTableDirty);
    show(0, 0.6);
    EXPECT_TRUE(state.fullTableDirty);
}

TEST_F(TrackCaptureTest, KeepsNothingBeyondTheLastTrack) {
    setSession({"a", "b"}, 1);
    show(1, 0.5);
    EXPECT_FALSE(state.fullTableDirty);
}

TEST_F(TrackCaptureTest, KeepsNothingWhileThePositionIsNotSure) {
    setSession({"a"}, -1);
    show(1, 0.5);
    state.published.bankOffset = 0;
    for (const BankUser user : {BankUser::seek, BankUser::scan}) {
        state.published.banksUsedBy = user;
        show(0, 0.5);
    }
    EXPECT_THAT(kept(), ElementsAre(std::nullopt));
    EXPECT_FALSE(state.fullTableDirty);
}

// Pro Tools may not have got it, or not have followed.
TEST_F(TrackCaptureTest, KeepsNoMoveOfTheClientThatProToolsHasNotShown) {
    setSession({"a"}, 0);
    show(0, 0.5);
    state.published.strips[0].fader = 0.9; // by the client
    bench.parts().capture.allShown();
    bench.run(TrackCapture::stillness);
    EXPECT_THAT(kept(), ElementsAre(0.5));
}

TEST_F(TrackCaptureTest, KeepsNothingUntilNamesAreStill) {
    setSession({"a", "b"}, 0);
    bench.parts().feedback.faderFeedback(*Strip::of(0), 0.5); // of the track whose name comes next
    bench.run(149ms);
    name(0, "b");
    name(1, "");
    bench.run(149ms);
    EXPECT_THAT(kept(), ElementsAre(std::nullopt, std::nullopt));
    bench.run(151ms);
    EXPECT_THAT(kept(), ElementsAre(std::nullopt, 0.5));
}

TEST_F(TrackCaptureTest, KeepsWhichTracksAreSelected) {
    setSession({"a", "b", "c"}, 1);
    select(0, true);
    bench.run(TrackCapture::stillness);
    EXPECT_THAT(column(state.published.session, &Track::select), ElementsAre(false, true, false));
    EXPECT_TRUE(state.fullTableDirty);
    select(0, false);
    bench.run(TrackCapture::stillness);
    EXPECT_THAT(column(state.published.session, &Track::select), ElementsAre(false, false, false));
}

// Pro Tools need not send again what is the same.
TEST_F(TrackCaptureTest, KeepsWhatIsTrueOfTheTracksBeforeToo) {
    setSession({"a", "b", "c"}, 0);
    select(0, true);
    show(0, 0.5);
    name(0, "b");
    name(1, "c");
    name(2, "");
    bench.run(2 * TrackCapture::stillness);
    EXPECT_THAT(kept(), ElementsAre(0.5, 0.5, std::nullopt));
    EXPECT_THAT(column(state.published.session, &Track::select), ElementsAre(true, true, false));
}

TEST_F(TrackCaptureTest, KeepsWhatIsShownWhenAValueStandsInAName) {
    setSession({"a", "b", "c"}, 0);
    name(1, "-6.2");
    show(1, 0.5);
    EXPECT_THAT(kept(), ElementsAre(std::nullopt, std::nullopt, std::nullopt));
    name(1, "b");
    bench.run(300ms);
    EXPECT_THAT(kept(), ElementsAre(std::nullopt, 0.5, std::nullopt));
}

} // namespace
} // namespace lumbrine
