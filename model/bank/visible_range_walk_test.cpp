// Reading the automation modes and pans of a range of the session.
#include "model/testing/banking_host.h"
#include "model/testing/model_test.h"
#include "model/testing/session_columns.h"

#include <algorithm>
#include <span>

namespace lumbrine {
namespace {

// Connected, 20 tracks, the first ones shown; no heartbeat.
class VisibleRangeTest : public ModelTest {
protected:
    VisibleRangeTest() {
        bench.parts().surfaces.startSurfaces();
        host.show();
        for (int track = 0; track < 20; ++track)
            host.modes.emplace_back(track % 2 == 0 ? "Read" : "Ltch");
        bench.setTrackMap(numbers(20), 0);
        state.published.huiConnected = true;
        bench.learnThatTheHostIsQuick();
        bench.run(2s);
        bench.mark();
        bench.takeLines();
    }

    bool ends(Duration limit = 20s) {
        world.runtime.runUntilIdle();
        return world.runtime.runUntil([this] { return state.published.banksUsedBy != BankUser::walk; }, limit);
    }

    // The session indices of the tracks whose pan is known.
    std::vector<std::size_t> known() {
        std::vector<std::size_t> tracks;
        for (std::size_t track = 0; track < state.published.session.size(); ++track)
            if (state.published.session.tracks[track].pan) tracks.push_back(track);
        return tracks;
    }

    SessionPan pan(std::size_t track) { return state.published.session.tracks.at(track).pan.value(); }

    VisibleRangeWalk& walk = bench.parts().visibleRange;
    ReceiverState& state = bench.state();
    BankingHost host{bench, numbers(20)};
};

TEST_F(VisibleRangeTest, EveryTrackOfTheRangeIsProbedAndTheViewPutBack) {
    walk.refreshVisibleRange(5, 9, bench.asked());
    ASSERT_TRUE(ends());
    EXPECT_THAT(known(), ElementsAre(5u, 6u, 7u, 8u, 9u, 10u, 11u, 12u, 13u));
    EXPECT_THAT(column(state.published.session, &Track::mode),
                ElementsAre(0, 0, 0, 0, 0, 3, 1, 3, 1, 3, 1, 3, 1, 3, 0, 0, 0, 0, 0, 0));
    EXPECT_EQ(host.offset, 0);
    EXPECT_EQ(state.published.bankOffset, 0);
    EXPECT_TRUE(state.published.session.surveyed);
    EXPECT_THAT(bench.lines, ElementsAre("✓ Captured auto/pan for visible range 6–14"));
}

TEST_F(VisibleRangeTest, AProbeHoldsTheAutoSwitchFor150Milliseconds) {
    walk.refreshVisibleRange(0, 1, bench.asked());
    ASSERT_TRUE(ends());
    // It is where it should be, which takes two quiet waits to see.
    EXPECT_THAT(bench.heardOn(bench.surfaceA),
                ElementsAre("240ms B0 0F 00", "240ms B0 2F 44", "390ms B0 0F 00", "390ms B0 2F 04"));
}

TEST_F(VisibleRangeTest, TheEndOfTheSessionIsReachedWithAFullWindow) {
    walk.refreshVisibleRange(17, 200, bench.asked());
    ASSERT_TRUE(ends());
    EXPECT_THAT(known(), ElementsAre(17u, 18u, 19u));
    EXPECT_THAT(bench.lines, ElementsAre("✓ Captured auto/pan for visible range 18–20"));
    EXPECT_EQ(host.offset, 0);
}

TEST_F(VisibleRangeTest, ARangeOfNoneIsOneOfOne) {
    walk.refreshVisibleRange(4, 0, bench.asked());
    ASSERT_TRUE(ends());
    EXPECT_THAT(known(), ElementsAre(4u));
    EXPECT_THAT(bench.lines, ElementsAre("✓ Captured auto/pan for visible range 5–5"));
}

TEST_F(VisibleRangeTest, ARangeThatBeginsBeforeTheSessionBeginsWithIt) {
    walk.refreshVisibleRange(-3, 5, bench.asked());
    ASSERT_TRUE(ends());
    EXPECT_THAT(known(), ElementsAre(0u, 1u));
    EXPECT_THAT(bench.lines, ElementsAre("✓ Captured auto/pan for visible range 1–2"));
}

TEST_F(VisibleRangeTest, ARangeOutsideTheSessionIsNone) {
    walk.refreshVisibleRange(20, 5, bench.asked());
    bench.run(1s);
    EXPECT_THAT(bench.heardOn(bench.surfaceA), IsEmpty());
    EXPECT_THAT(bench.lines, IsEmpty());
    EXPECT_FALSE(state.published.session.surveyed);
}

TEST_F(VisibleRangeTest, NothingHappensWithoutProToolsOrAMapOrWhileTheTransportRuns) {
    const auto refused = [this](const std::string& why) {
        walk.refreshVisibleRange(0, 8, bench.asked());
        bench.run(11s); // the same line would be one of a run until then
        EXPECT_THAT(bench.takeLines(), ElementsAre("✗ Dropped reading of modes and pans: " + why));
        return bench.heardOn(bench.surfaceA).empty();
    };
    for (bool* running : {&state.transportPlaying, &state.transportRecording}) {
        *running = true;
        EXPECT_TRUE(refused("playing or recording"));
        *running = false;
    }
    state.published.huiConnected = false;
    EXPECT_TRUE(refused("Pro Tools is not connected"));
    state.published.huiConnected = true;
    bench.setTrackMap({}, -1);
    EXPECT_TRUE(refused("the bank position is unknown"));
}

TEST_F(VisibleRangeTest, AModeThatIsNotShownLeavesTheOneThatWasKnown) {
    bench.state().published.session.surveyed = true;
    state.published.session.tracks[2].mode = 4;
    host.modes.clear();
    walk.refreshVisibleRange(2, 1, bench.asked());
    ASSERT_TRUE(ends());
    EXPECT_EQ(state.published.session.tracks[2].mode, 4);
    EXPECT_THAT(known(), ElementsAre(2u));
}

TEST_F(VisibleRangeTest, ThePanIsThatOfTheSideWhichTheVPotsShow) {
    bench.surfaceA.ring(2, 9, false);
    bench.surfaceA.ring(3, 6, true);
    world.runtime.runUntilIdle();
    walk.refreshVisibleRange(0, 4, bench.asked());
    ASSERT_TRUE(ends());
    EXPECT_EQ(pan(2).position, 9);
    EXPECT_FALSE(pan(2).centre);
    EXPECT_EQ(pan(2).side, 0);
    EXPECT_TRUE(pan(3).centre);

    bench.parts().surfaces.engine(SurfaceID::A).flipPanSide();
    state.published.panRight = true;
    bench.surfaceA.ring(2, 4, false);
    world.runtime.runUntilIdle();
    walk.refreshVisibleRange(0, 4, bench.asked());
    ASSERT_TRUE(ends());
    EXPECT_EQ(pan(2).position, 4);
    EXPECT_EQ(pan(2).side, 1);
}

// ---- Trouble

TEST_F(VisibleRangeTest, ItIsAbortedWhenTheSurfacesStandStill) {
    host.deaf = true;
    walk.refreshVisibleRange(6, 8, bench.asked());
    ASSERT_TRUE(ends(10s));
    EXPECT_THAT(known(), ElementsAre(6u, 7u)); // which are shown all the same
    EXPECT_THAT(bench.lines, ElementsAre("Aborted capturing the visible range (Pro Tools is not responding)",
                                         "✓ Captured auto/pan for visible range 7–14"));
}

TEST_F(VisibleRangeTest, ItIsAbortedWhenProToolsGoesAway) {
    walk.refreshVisibleRange(0, 20, bench.asked());
    bench.run(500ms);
    state.published.huiConnected = false;
    ASSERT_TRUE(ends());
    EXPECT_THAT(known(), ElementsAre(0u, 1u, 2u, 3u, 4u, 5u, 6u, 7u));
    EXPECT_EQ(bench.lines.front(), "Aborted capturing the visible range (Pro Tools is not responding)");
}

TEST_F(VisibleRangeTest, ItIsAbortedOnItsLastBankToo) {
    walk.refreshVisibleRange(0, 8, bench.asked());
    bench.run(500ms);
    state.published.huiConnected = false;
    ASSERT_TRUE(ends());
    EXPECT_THAT(known(), ElementsAre(0u, 1u, 2u, 3u, 4u, 5u, 6u, 7u));
    EXPECT_THAT(bench.lines, ElementsAre("Aborted capturing the visible range (Pro Tools is not responding)",
                                         "✓ Captured auto/pan for visible range 1–8"));
}

TEST_F(VisibleRangeTest, TheDisplaysSayWhichTracksAreRead) {
    state.published.bankOffset = 5; // the displays show the first tracks
    walk.refreshVisibleRange(0, 2, bench.asked());
    ASSERT_TRUE(ends());
    EXPECT_THAT(known(), ElementsAre(0u, 1u));
    EXPECT_EQ(bench.heardOn(bench.surfaceA).at(1), "240ms B0 2F 44"); // nothing moved before
}

TEST_F(VisibleRangeTest, ItGoesNoFurtherWhenThePositionIsLost) {
    bench.surfaceA.name(3, "????");
    world.runtime.runUntilIdle();
    walk.refreshVisibleRange(0, 20, bench.asked());
    ASSERT_TRUE(ends(10s));
    EXPECT_THAT(known(), IsEmpty());
    EXPECT_THAT(bench.lines, ElementsAre("✓ Captured auto/pan for visible range 1–20"));
}

TEST(VisibleRangeInJapanese, TellsWhatCameOfIt) {
    ModelWorld world;
    ModelBench bench(world, {.japanese = true});
    bench.parts().surfaces.startSurfaces();
    BankingHost host(bench, numbers(20));
    bench.setTrackMap(numbers(20), 0);
    bench.state().published.huiConnected = true;
    bench.run(1s);
    bench.takeLines();
    host.deaf = true;
    bench.parts().visibleRange.refreshVisibleRange(0, 20, bench.asked());
    bench.run(20s);
    EXPECT_THAT(bench.lines, ElementsAre("表示範囲の採取を中断しました（Pro Tools が応答しません）",
                                         "✓ 表示範囲 1–20 の auto/pan を採取しました"));
}

// ---- What the client is told

using ToldVisibleRangeTest = OwnedModelTest;

TEST_F(ToldVisibleRangeTest, ACapturedRangeIsToldWithTheWholeSession) {
    bench.surfaceA.ping();
    bench.run(1100ms);
    bench.state().published.huiConnected = true;
    BankingHost host(bench, numbers(8));
    host.faders.assign(8, 0.5);
    host.show();
    bench.setTrackMap(numbers(8), 0);
    bench.run(10ms);
    markAll();
    bench.parts().visibleRange.refreshVisibleRange(0, 1, bench.asked());
    ASSERT_TRUE(world.runtime.runUntil([this] { return bench.state().published.banksUsedBy == BankUser::walk; }, 1s));
    ASSERT_TRUE(
        world.runtime.runUntil([this] { return !(bench.state().published.banksUsedBy == BankUser::walk); }, 2s));
    settle();

    Lines types;
    for (const std::string& line : phone->tape.takeBytes())
        if (!line.starts_with("01 11")) types.push_back(line.substr(3, 2));
    Lines expected{"16"};
    expected.insert(expected.end(), 8, "10");
    expected.push_back("13");
    expected.insert(expected.end(), 8, "12");
    expected.insert(expected.end(), 16, "14");
    expected.insert(expected.end(), {"1C", "1E", "1F"});
    ASSERT_GE(types.size(), expected.size()); // a resend of the heartbeat may come before
    EXPECT_TRUE(std::ranges::equal(std::span(types).last(expected.size()), expected));
}

} // namespace
} // namespace lumbrine
