// The scan of the banks, against a simulated Pro Tools.
#include "tests/bank_map/studio.h"

#include <chrono>

namespace lumbrine {
namespace {

using namespace std::chrono_literals;
using testing::SizeIs;

struct Setting {
    int tracks;
    int surfaces;
    EndOfSession endOfSession;
};

std::string nameOf(const testing::TestParamInfo<Setting>& info) {
    return std::to_string(info.param.tracks) + "TracksOn" + std::to_string(info.param.surfaces) +
           (info.param.endOfSession == EndOfSession::fill ? "Filled" : "Blank");
}

class ScanOf : public testing::TestWithParam<Setting> {};

TEST_P(ScanOf, MapsEveryTrackAndKnowsWhereTheSurfacesAre) {
    Studio studio(numberedTracks(GetParam().tracks),
                  {.surfaces = GetParam().surfaces, .endOfSession = GetParam().endOfSession});
    ASSERT_TRUE(studio.mapSession(120s));
    EXPECT_EQ(studio.shown().trackMap, displayNames(GetParam().tracks));
    EXPECT_EQ(studio.mapFaders(), studio.hostFaders());
    EXPECT_EQ(studio.hostOffset(), 0);
    EXPECT_EQ(studio.shown().bankOffset, 0);
    EXPECT_EQ(studio.logged("✓ Mapped all " + std::to_string(GetParam().tracks) + " tracks"), 1);
}

std::vector<Setting> everySetting() {
    std::vector<Setting> settings;
    for (const int surfaces : {1, 2})
        for (const EndOfSession end : {EndOfSession::fill, EndOfSession::blank})
            for (const int tracks : {1, 7, 8, 9, 15, 16, 17, 20, 64, 200})
                settings.push_back({tracks, surfaces, end});
    settings.push_back({500, 1, EndOfSession::fill});
    settings.push_back({1000, 2, EndOfSession::blank});
    return settings;
}

INSTANTIATE_TEST_SUITE_P(EverySize, ScanOf, testing::ValuesIn(everySetting()), nameOf);

// ---- The largest session: the first window and 64 banks.

class LargestMapOn : public testing::TestWithParam<int> {};

TEST_P(LargestMapOn, SurfacesHasRoomFor520TracksOfEach) {
    const int surfaces = GetParam();
    const int room = 520 * surfaces;
    Studio studio(numberedTracks(room + 1), {.surfaces = surfaces});
    ASSERT_TRUE(studio.mapSession(120s));
    EXPECT_EQ(studio.shown().trackMap, displayNames(room)); // all but the last
    EXPECT_EQ(studio.hostOffset(), 0);
    EXPECT_EQ(studio.shown().bankOffset, 0);
}

INSTANTIATE_TEST_SUITE_P(Number, LargestMapOn, testing::Values(1, 2));

// ---- Where the user was

TEST(Scan, PutsTheViewBack) {
    for (const int view : {0, 3, 8, 11, 12}) {
        Studio studio(numberedTracks(20));
        studio.run(1s);
        studio.proTools->scrollTo(view);
        ASSERT_TRUE(studio.mapSession(30s));
        EXPECT_THAT(studio.shown().trackMap, SizeIs(20));
        EXPECT_EQ(studio.hostOffset(), view);
        EXPECT_EQ(studio.shown().bankOffset, view);
    }
}

TEST(Scan, PutsTheViewBackFromALastBankWithBlankStrips) {
    for (const int view : {0, 3, 8, 11, 12}) {
        Studio studio(numberedTracks(20), {.endOfSession = EndOfSession::blank});
        studio.run(1s);
        studio.proTools->scrollTo(view);
        ASSERT_TRUE(studio.mapSession(30s));
        EXPECT_THAT(studio.shown().trackMap, SizeIs(20));
        EXPECT_EQ(studio.hostOffset(), view);
        EXPECT_EQ(studio.shown().bankOffset, view);
    }
}

TEST(Scan, TakesABankWithBlankStripsForTheLast) {
    using enum Press;
    Studio studio(numberedTracks(20), {.endOfSession = EndOfSession::blank});
    ASSERT_TRUE(studio.mapSession(30s));
    EXPECT_THAT(studio.presses(), testing::ElementsAre(bankLeft, bankRight, bankRight, // and none that does nothing
                                                       bankLeft, bankLeft));
}

TEST(Scan, PutsAViewThatWasPartlyBlankBackToTheLastFullOne) {
    Studio studio(numberedTracks(20), {.endOfSession = EndOfSession::blank});
    studio.run(1s);
    studio.proTools->scrollTo(16);
    ASSERT_TRUE(studio.mapSession(30s));
    EXPECT_EQ(studio.hostOffset(), 12);
    EXPECT_EQ(studio.shown().bankOffset, 12);
}

// ---- Names

SimulatedSession tracksNamed(const std::vector<std::string>& names) {
    std::vector<SimulatedTrack> tracks;
    for (const std::string& name : names) {
        tracks.emplace_back();
        tracks.back().name = name;
    }
    return SimulatedSession("Names", std::move(tracks));
}

TEST(Scan, TakesTwoTracksOfOneNameOnEitherSideOfABankForOne) {
    Studio studio(tracksNamed({"Kick", "Snar", "Hat", "Tom1", "Tom2", "OH L", "OH R", "Vox", // the first bank
                               "Vox", "Bass", "Gtr1", "Gtr2", "Key1", "Key2", "Str", "FX"}));
    ASSERT_TRUE(studio.mapSession(30s));
    EXPECT_THAT(studio.shown().trackMap,
                testing::ElementsAre("Kick", "Snar", "Hat", "Tom1", "Tom2", "OH L", "OH R", "Vox", "Bass", "Gtr1",
                                     "Gtr2", "Key1", "Key2", "Str", "FX"));
    EXPECT_EQ(studio.shown().bankOffset, 0);
}

TEST(Scan, KeepsTwoTracksOfOneNameWithinABank) {
    Studio studio(tracksNamed({"Vox", "Vox", "Hat", "Tom1", "Tom2", "OH L", "OH R", "Kick", "Bass"}));
    ASSERT_TRUE(studio.mapSession(30s));
    EXPECT_THAT(studio.shown().trackMap, SizeIs(9));
    EXPECT_EQ(studio.shown().bankOffset, 0);
}

// ---- Reaction time

class ScanOfAHostThatTakes : public testing::TestWithParam<int> {};

TEST_P(ScanOfAHostThatTakes, MillisecondsMapsEveryTrack) {
    Studio studio(numberedTracks(40), {.latency = std::chrono::milliseconds(GetParam())});
    ASSERT_TRUE(studio.mapSession(30s));
    EXPECT_EQ(studio.shown().trackMap, displayNames(40));
    EXPECT_EQ(studio.hostOffset(), 0);
    EXPECT_EQ(studio.shown().bankOffset, 0);
}

// A press of 30 ms, a quiet wait of 120 ms, and two looks at the same names 120 ms apart make an end of the session.
INSTANTIATE_TEST_SUITE_P(Number, ScanOfAHostThatTakes, testing::Values(0, 1, 50, 100, 200, 269));

TEST(Scan, TakesAHostForUnmovedThatNeeds270Milliseconds) {
    Studio studio(numberedTracks(40), {.latency = 270ms});
    ASSERT_TRUE(studio.mapSession(30s));
    EXPECT_EQ(studio.shown().trackMap, displayNames(8));
    EXPECT_EQ(studio.shown().bankOffset, -1); // which it has noticed
    EXPECT_EQ(studio.logged("Cannot determine bank position, rescanning…"), 1);
    // It scans once more, and leaves it at that until the position has been stuck for some time.
    studio.run(2s);
    ASSERT_TRUE(studio.shown().calibrating);
    ASSERT_TRUE(studio.untilQuiet(10s));
    EXPECT_EQ(studio.logged("Cannot determine bank position, rescanning…"), 1);
    EXPECT_EQ(studio.logged("Cannot determine bank position (map does not match the display)"), 1);
    studio.run(4s);
    EXPECT_FALSE(studio.shown().calibrating);
}

} // namespace
} // namespace lumbrine
