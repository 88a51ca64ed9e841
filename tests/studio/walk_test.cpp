// Walks across the session, against a simulated Pro Tools: group faders, group automation modes, the visible range.
#include "tests/studio/seek_bench.h"

#include <chrono>

namespace lumbrine {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsSupersetOf;
using Automation = SimulatedTrack::Automation;

constexpr int touchButton = 5; // of the automation modes

// A studio that has just mapped its session and shows its beginning.
class WalkStudio : public Studio {
public:
    explicit WalkStudio(int tracks, const SimulatorOptions& options = {}) : Studio(numberedTracks(tracks), options) {
        EXPECT_TRUE(mapSession(120s));
        run(2s);
    }

    // Until the walk that was just asked for is over; absent when it does not begin, or is not over within the limit.
    std::optional<Duration> untilWalked(Duration limit) {
        if (!runUntil([this] { return state().published.banksUsedBy == BankUser::walk; }, 10s)) return std::nullopt;
        return untilQuiet(limit);
    }

    std::vector<int> tracksIn(Automation mode) const {
        const SimulatedSession session = proTools->session();
        std::vector<int> tracks;
        for (std::size_t i = 0; i < session.tracks().size(); ++i)
            if (session.tracks()[i].automation == mode) tracks.push_back(static_cast<int>(i));
        return tracks;
    }
};

class Walk : public testing::TestWithParam<int> {};

TEST_P(Walk, SetsFadersAllOverTheSession) {
    WalkStudio studio(64, {.surfaces = GetParam()});
    std::vector<int> expected = studio.hostFaders();
    std::vector<std::pair<int, double>> entries;
    for (const int member : {63, 2, 17, 40, 41, 5}) {
        entries.emplace_back(member, 0.5);
        expected[static_cast<std::size_t>(member)] = 8191;
    }
    studio.parts().groups.groupSetFaders(entries, studio.bench.asked());
    ASSERT_TRUE(studio.untilWalked(30s));
    studio.run(100ms);
    EXPECT_EQ(studio.hostFaders(), expected);
    EXPECT_EQ(studio.hostOffset(), 0);
    EXPECT_EQ(studio.shown().bankOffset, 0);
}

TEST_P(Walk, ReturnsToALastBankWithBlankStrips) {
    WalkStudio studio(60, {.surfaces = GetParam(), .endOfSession = EndOfSession::blank});
    const int last = 60 / (8 * GetParam()) * 8 * GetParam();
    studio.proTools->scrollTo(last);
    studio.run(1s);
    studio.parts().groups.groupSetFaders({{2, 0.5}}, studio.bench.asked());
    ASSERT_TRUE(studio.untilWalked(30s));
    studio.run(100ms);
    EXPECT_EQ(studio.hostOffset(), last);
    EXPECT_EQ(studio.shown().bankOffset, last);
}

TEST_P(Walk, SetsAutomationModesAllOverTheSession) {
    WalkStudio studio(64, {.surfaces = GetParam(), .modeShown = 100ms});
    studio.proTools->scrollTo(20);
    studio.run(2s);
    studio.parts().groups.groupSetAutoMode({63, 2, 17, 40, 41, 5}, touchButton, studio.bench.asked());
    ASSERT_TRUE(studio.untilWalked(60s));
    studio.run(200ms);
    EXPECT_THAT(studio.tracksIn(Automation::touch), ElementsAre(2, 5, 17, 40, 41, 63));
    EXPECT_EQ(studio.hostOffset(), 20);
}

// While a mode stands in a display the position is unknown, which may use up the attempts to reach the next member.
TEST_P(Walk, ChangesNoOtherTrackThoughAModeStaysInTheDisplayForLong) {
    WalkStudio studio(64, {.surfaces = GetParam(), .modeShown = 3s});
    studio.parts().groups.groupSetAutoMode({2, 17, 63}, touchButton, studio.bench.asked());
    ASSERT_TRUE(studio.untilWalked(60s));
    EXPECT_THAT(std::vector({2, 17, 63}), IsSupersetOf(studio.tracksIn(Automation::touch)));
    EXPECT_THAT(studio.tracksIn(Automation::touch), Contains(2));
}

TEST_P(Walk, ReadsAutomationModesAndPansOfARange) {
    WalkStudio studio(64, {.surfaces = GetParam()});
    studio.proTools->edit([](SimulatedSession& session) {
        int count = 0;
        session.changeAll([&count](SimulatedTrack& track) {
            track.automation = count++ % 2 == 0 ? Automation::latch : Automation::off;
            track.panLeft = 100;
        });
    });
    studio.run(2s);
    studio.parts().visibleRange.refreshVisibleRange(10, 40, studio.bench.asked());
    ASSERT_TRUE(studio.untilWalked(60s));
    const std::vector<Track>& known = studio.state().published.session.tracks;
    for (std::size_t track = 0; track < 64; ++track) {
        const bool inRange = track >= 10 && track < 50;
        EXPECT_EQ(known[track].mode, inRange ? (track % 2 == 0 ? 3 : 5) : 0) << track;
        ASSERT_EQ(known[track].pan.has_value(), inRange) << track;
        EXPECT_EQ(known[track].pan.value_or(SessionPan{}).position, inRange ? 11 : 0) << track;
    }
    EXPECT_EQ(studio.hostOffset(), 0);
    EXPECT_EQ(studio.logged("✓ Captured auto/pan for visible range 11–50"), 1);
}

INSTANTIATE_TEST_SUITE_P(Surfaces, Walk, testing::Values(1, 2));

TEST(WalkOfManyBanks, ReachesItsMembersThoughOnePressInTenIsLost) {
    SeekBench bench(200, {.dropOnePressIn = 10});
    std::vector<std::pair<int, double>> entries;
    for (int member = 190; member > 0; member -= 19)
        entries.emplace_back(member, 1.0);
    bench.bench.run(1s);
    bench.parts.groups.groupSetFaders(entries, bench.bench.asked());
    bench.bench.run(1ms);
    ASSERT_TRUE(bench.world.runtime.runUntil([&bench] { return bench.parts.state.quiet(); }, 60s));
    bench.bench.run(100ms);
    const SimulatedSession session = bench.proTools->session();
    for (const auto& [member, value] : entries)
        EXPECT_EQ(session.tracks()[static_cast<std::size_t>(member)].fader.raw(), 16383) << member;
    EXPECT_EQ(bench.hostOffset(), 0);
}

// Four attempts each, then the next member.
TEST(WalkOfManyBanks, GivesTheSurfacesBackWhenProToolsStandsStill) {
    WalkStudio studio(200);
    studio.proTools->stick(300s);
    studio.parts().groups.groupSetFaders({{50, 1.0}, {100, 1.0}, {150, 1.0}}, studio.bench.asked());
    const auto taken = studio.untilWalked(60s);
    ASSERT_TRUE(taken);
    EXPECT_LT(*taken, 50s);

    studio.parts().visibleRange.refreshVisibleRange(100, 100, studio.bench.asked());
    studio.run(1s);
    EXPECT_FALSE(studio.state().published.banksUsedBy == BankUser::walk); // it counts as gone by now
}

TEST(WalkOfManyBanks, KeepsSeeksAndScansAway) {
    WalkStudio studio(64);
    studio.parts().groups.groupSetFaders({{50, 1.0}}, studio.bench.asked());
    studio.run(200ms);
    ASSERT_TRUE(studio.state().published.banksUsedBy == BankUser::walk);
    studio.parts().seekWorker.seekBank(30);
    studio.parts().calibration.calibrateBanks(true);
    EXPECT_FALSE(studio.state().published.banksUsedBy == BankUser::seek);
    EXPECT_FALSE(studio.shown().calibrating());
    ASSERT_TRUE(studio.untilQuiet(30s));
    EXPECT_EQ(studio.hostOffset(), 0);
}

} // namespace
} // namespace lumbrine
