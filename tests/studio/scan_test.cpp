// The scan of the banks, against a simulated Pro Tools.
#include "model/testing/session_columns.h"
#include "tests/studio/studio.h"

#include <chrono>

namespace lumbrine {
namespace {

using namespace std::chrono_literals;
using testing::SizeIs;

struct Setting {
    int tracks;
    int surfaces;
    EndOfSession endOfSession;
    int latency = 20;
};

std::string nameOf(const testing::TestParamInfo<Setting>& info) {
    return std::to_string(info.param.tracks) + "TracksOn" + std::to_string(info.param.surfaces) +
           (info.param.endOfSession == EndOfSession::fill ? "FilledAfter" : "BlankAfter") +
           std::to_string(info.param.latency) + "ms";
}

class ScanOf : public testing::TestWithParam<Setting> {
protected:
    // A third of the way down: with the wider sessions no multiple of the width.
    int view() const { return std::max(GetParam().tracks - stripsPerSurface * GetParam().surfaces, 0) / 3; }
};

TEST_P(ScanOf, MapsEveryTrackAndPutsTheViewBack) {
    const auto& [tracks, surfaces, endOfSession, latency] = GetParam();
    Studio studio(numberedTracks(tracks), {.surfaces = surfaces,
                                           .latency = std::chrono::milliseconds(latency),
                                           .endOfSession = endOfSession,
                                           .redrawOnBank = tracks <= 200});
    studio.run(2s);
    studio.proTools->scrollTo(view());
    ASSERT_TRUE(studio.mapSession(300s));
    studio.run(500ms); // a slow host has not reacted to the last press
    EXPECT_EQ(displaysOf(studio.shown().session), displayNames(tracks));
    EXPECT_EQ(studio.mapFaders(), studio.hostFaders());
    EXPECT_EQ(studio.hostOffset(), view());
    EXPECT_EQ(studio.shown().bankOffset, view());
    EXPECT_EQ(studio.logged("✓ Mapped all " + std::to_string(tracks) + " tracks"), 1);
}

// A press of 30 ms, a quiet wait of 120 ms, and two looks at the same names 120 ms apart make an end of the session: a
// host may take 269 ms.
std::vector<Setting> everySetting() {
    std::vector<Setting> settings;
    for (const int surfaces : {1, 2})
        for (const EndOfSession end : {EndOfSession::fill, EndOfSession::blank}) {
            for (const int tracks : {1, 7, 8, 9, 15, 16, 17, 20, 64, 200})
                for (const int latency : {0, 20, 100, 200, 269})
                    settings.push_back({tracks, surfaces, end, latency});
            for (const int tracks : {500, 1000})
                for (const int latency : {20, 269})
                    settings.push_back({tracks, surfaces, end, latency});
            settings.push_back({Calibration::maxTracks, surfaces, end});
        }
    return settings;
}

INSTANTIATE_TEST_SUITE_P(EverySize, ScanOf, testing::ValuesIn(everySetting()), nameOf);

// ---- A session that is too large

TEST(Scan, OfALargerSessionSaysThatThePositionIsUnknown) {
    Studio studio(numberedTracks(Calibration::maxTracks + 200), {.redrawOnBank = false});
    ASSERT_TRUE(studio.mapSession(400s));
    EXPECT_EQ(studio.shown().bankOffset, -1);
    EXPECT_LT(studio.shown().session.size(), Calibration::maxTracks + 100u);
}

// ---- Where the user was

TEST(Scan, PutsTheViewBack) {
    for (const int view : {0, 3, 8, 11, 12}) {
        Studio studio(numberedTracks(20));
        studio.run(1s);
        studio.proTools->scrollTo(view);
        ASSERT_TRUE(studio.mapSession(30s));
        EXPECT_THAT(displaysOf(studio.shown().session), SizeIs(20));
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
        EXPECT_THAT(displaysOf(studio.shown().session), SizeIs(20));
        EXPECT_EQ(studio.hostOffset(), view);
        EXPECT_EQ(studio.shown().bankOffset, view);
    }
}

TEST(Scan, TakesABankWithBlankStripsForTheLastWhenAPressChangesNothing) {
    using enum Press;
    Studio studio(numberedTracks(20), {.endOfSession = EndOfSession::blank});
    ASSERT_TRUE(studio.mapSession(30s));
    EXPECT_THAT(studio.presses(),
                testing::ElementsAre(bankLeft, channelLeft, bankRight, bankRight, bankRight, bankLeft, bankLeft));
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

TEST(Scan, KeepsTracksOfOneNameThatMeetWhereTwoBanksDo) {
    const std::vector<std::string> names{"Kick", "Snar", "Hat",  "Tom1", "Tom2", "OH L", "Vox", "Vox", // the first bank
                                         "Vox",  "Vox",  "Gtr1", "Gtr2", "Key1", "Key2", "Str", "FX"};
    Studio studio(tracksNamed(names));
    ASSERT_TRUE(studio.mapSession(30s));
    EXPECT_EQ(displaysOf(studio.shown().session), names);
    for (const int view : {8, 4, 0}) {
        studio.proTools->scrollTo(view);
        studio.run(100ms);
        EXPECT_EQ(studio.shown().bankOffset, view);
    }
}

TEST(Scan, TakesTheOverlapWithAFullLastBankForWhatItIs) {
    Studio studio(tracksNamed({"Vox", "Vox", "Vox", "Vox", "Vox", "Vox", "Vox", "Kick", // the first bank
                               "Snar", "Hat"}));
    ASSERT_TRUE(studio.mapSession(30s)); // its last bank begins with the third track
    EXPECT_THAT(displaysOf(studio.shown().session),
                testing::ElementsAre("Vox", "Vox", "Vox", "Vox", "Vox", "Vox", "Vox", "Kick", "Snar", "Hat"));
    EXPECT_EQ(studio.shown().bankOffset, 0);
}

TEST(Scan, KeepsTwoTracksOfOneNameWithinABank) {
    Studio studio(tracksNamed({"Vox", "Vox", "Hat", "Tom1", "Tom2", "OH L", "OH R", "Kick", "Bass"}));
    ASSERT_TRUE(studio.mapSession(30s));
    EXPECT_THAT(displaysOf(studio.shown().session), SizeIs(9));
    EXPECT_EQ(studio.shown().bankOffset, 0);
}

} // namespace
} // namespace lumbrine
