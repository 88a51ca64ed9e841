// Scans that go wrong: hosts that are slow or stuck, presses that get lost.
#include "model/testing/session_columns.h"
#include "tests/studio/studio.h"

#include <chrono>
#include <tuple>

namespace lumbrine {
namespace {

using namespace std::chrono_literals;

class SlowHost : public testing::TestWithParam<std::tuple<int, int, int>> {};

TEST_P(SlowHost, IsMappedWholeFromAnywhere) {
    const auto [surfaces, latency, offset] = GetParam();
    Studio studio(numberedTracks(64), {.surfaces = surfaces, .latency = std::chrono::milliseconds(latency)});
    studio.proTools->scrollTo(offset);
    ASSERT_TRUE(studio.mapSession(60s));
    EXPECT_EQ(displaysOf(studio.shown().session), displayNames(64));
    EXPECT_EQ(studio.hostOffset(), offset);
    EXPECT_EQ(studio.shown().bankOffset, offset);
}

INSTANTIATE_TEST_SUITE_P(SurfacesMillisecondsAndOffset, SlowHost,
                         testing::Combine(testing::Values(1, 2), testing::Values(271, 300, 500, 1000),
                                          testing::Values(0, 19, 48)));

TEST(Scan, TakesAHostForUnmovedThatNeedsMoreThan1100Milliseconds) {
    Studio studio(numberedTracks(40), {.latency = 1150ms});
    ASSERT_TRUE(studio.mapSession(60s));
    EXPECT_EQ(displaysOf(studio.shown().session), displayNames(8));
    EXPECT_EQ(studio.shown().bankOffset, -1); // which it has noticed
    EXPECT_EQ(studio.logged("Cannot determine bank position, rescanning…"), 1);
    // It scans once more, and leaves it at that until the position has been stuck for some time.
    studio.run(2s);
    ASSERT_TRUE(studio.shown().calibrating());
    ASSERT_TRUE(studio.untilQuiet(20s));
    EXPECT_EQ(studio.logged("Cannot determine bank position, rescanning…"), 1);
    EXPECT_EQ(studio.logged("Cannot determine bank position (map does not match the display)"), 1);
    studio.run(4s);
    EXPECT_FALSE(studio.shown().calibrating());
}

TEST(Scan, IsRepeatedAfterAHostThatWasStuckInIt) {
    Studio studio(numberedTracks(64));
    ASSERT_TRUE(studio.runUntil([&studio] { return studio.shown().calibrating(); }, 10s));
    studio.run(4s); // among the first banks
    studio.proTools->stick(1s);
    ASSERT_TRUE(studio.runUntil([&studio] { return studio.shown().session.size() == 64u; }, 60s));
    ASSERT_TRUE(studio.untilQuiet(10s));
    EXPECT_EQ(studio.shown().bankOffset, studio.hostOffset());
}

TEST(Scan, IsRepeatedAfterASurfaceWasLostInIt) {
    Studio studio(numberedTracks(64), {.surfaces = 2});
    ASSERT_TRUE(studio.runUntil([&studio] { return studio.hostOffset() == 16; }, 20s));
    studio.proTools->silence(1, 6s);
    ASSERT_TRUE(studio.runUntil([&studio] { return studio.shown().bankOffset >= 0; }, 60s));
    ASSERT_TRUE(studio.untilQuiet(10s));
    EXPECT_EQ(displaysOf(studio.shown().session), displayNames(64));
    EXPECT_EQ(studio.shown().bankOffset, studio.hostOffset());
}

TEST(Scan, IsRepeatedAfterProToolsWasSilentInIt) {
    Studio studio(numberedTracks(30));
    studio.proTools->scrollTo(20);
    ASSERT_TRUE(studio.runUntil([&studio] { return studio.hostOffset() == 15; }, 20s)); // on the way to the top
    studio.proTools->silence(0, 5s);
    ASSERT_TRUE(studio.runUntil([&studio] { return studio.shown().bankOffset >= 0; }, 60s));
    ASSERT_TRUE(studio.untilQuiet(10s));
    EXPECT_EQ(displaysOf(studio.shown().session), displayNames(30));
    EXPECT_EQ(studio.shown().bankOffset, studio.hostOffset());
}

TEST(Scan, IsRepeatedAfterAnotherSessionWasOpenedInIt) {
    for (const Duration after : {100ms, 500ms, 1000ms, 1500ms, 2000ms, 3000ms}) {
        Studio studio(numberedTracks(12), {.sessionOpensAfter = 400ms});
        ASSERT_TRUE(studio.runUntil([&studio] { return studio.shown().calibrating(); }, 20s));
        studio.run(after);
        studio.proTools->exchangeSession(numberedTracks(30));
        ASSERT_TRUE(studio.runUntil([&studio] { return studio.shown().bankOffset >= 0; }, 60s));
        ASSERT_TRUE(studio.untilQuiet(10s));
        EXPECT_EQ(displaysOf(studio.shown().session), displayNames(30));
        EXPECT_EQ(studio.shown().bankOffset, studio.hostOffset());
    }
}

TEST(Session, ThatLooksLikeTheOneBeforeIsScannedToo) {
    for (const Duration opensAfter : {100ms, 500ms}) {
        Studio studio(numberedTracks(12), {.sessionOpensAfter = opensAfter});
        ASSERT_TRUE(studio.mapSession(30s));
        SimulatedSession sibling = numberedTracks(12);
        sibling.changeAll([](SimulatedTrack& track) { track.fader = FaderValue::ofRaw(0x1000); });
        studio.proTools->exchangeSession(sibling);
        ASSERT_TRUE(studio.runUntil([&studio] { return studio.shown().session.empty(); }, 100ms));
        ASSERT_TRUE(studio.runUntil([&studio] { return studio.shown().bankOffset == 0; }, 30s));
        ASSERT_TRUE(studio.untilQuiet(10s));
        EXPECT_EQ(studio.mapFaders(), studio.hostFaders());
    }
}

TEST(Scan, RepeatsAKeyThatWasLost) {
    Studio studio(numberedTracks(64), {.hostTimeout = 60s});
    ASSERT_TRUE(studio.runUntil([&studio] { return studio.hostOffset() == 8; }, 20s));
    studio.run(200ms);
    studio.proTools->silence(0, 300ms); // the next press comes and goes
    ASSERT_TRUE(studio.runUntil([&studio] { return !studio.shown().calibrating(); }, 30s));
    EXPECT_EQ(displaysOf(studio.shown().session), displayNames(64));
    EXPECT_EQ(studio.shown().bankOffset, studio.hostOffset());
}

TEST(Scan, AnewShowsAtOnceThatTheMapIsGoneAlsoWhereItHasBeenSaidAlreadyThatItWaits) {
    Studio studio(numberedTracks(40), {.latency = 1150ms}); // which is mapped in vain
    const auto phone = studio.bench.phone("192.168.1.7");
    ASSERT_TRUE(studio.mapSession(30s));
    studio.proTools->edit([](SimulatedSession& session) { session.play(); });
    studio.run(1s);
    phone->send({0x01, 0x0C});
    studio.run(100ms);
    ASSERT_EQ(studio.logged("Scan: postponed while playing/recording (runs automatically after stop)"), 1);

    std::vector<std::size_t> sizes; // of the map, whenever a change was announced
    studio.bench.model->onChange([&] { sizes.push_back(studio.shown().session.size()); });
    ASSERT_TRUE(studio.runUntil([&] { return studio.shown().session.empty(); }, 3s));
    EXPECT_THAT(sizes, testing::Contains(0u));
    EXPECT_EQ(studio.logged("Scan: postponed while playing/recording (runs automatically after stop)"), 1);
    studio.bench.model->onChange({});
}

} // namespace
} // namespace lumbrine
