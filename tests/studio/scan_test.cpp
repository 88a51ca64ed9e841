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
    // The first window and 64 banks.
    int mapped() const { return std::min(GetParam().tracks, 520 * GetParam().surfaces); }

    // A third of the way down: with the wider sessions no multiple of the width, and less than 64 banks from the top.
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
    ASSERT_TRUE(studio.mapSession(200s));
    studio.run(500ms); // a slow host has not reacted to the last press
    EXPECT_EQ(displaysOf(studio.shown().session), displayNames(mapped()));
    std::vector<int> faders = studio.hostFaders();
    faders.resize(static_cast<std::size_t>(mapped()));
    EXPECT_EQ(studio.mapFaders(), faders);
    EXPECT_EQ(studio.hostOffset(), view());
    EXPECT_EQ(studio.shown().bankOffset, view());
    EXPECT_EQ(studio.logged("✓ Mapped all " + std::to_string(mapped()) + " tracks"), 1);
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
        }
    return settings;
}

INSTANTIATE_TEST_SUITE_P(EverySize, ScanOf, testing::ValuesIn(everySetting()), nameOf);

// ---- The largest session

class LargestMapOn : public testing::TestWithParam<Setting> {};

TEST_P(LargestMapOn, SurfacesHasRoomForTheFirstWindowAnd64Banks) {
    const Setting& setting = GetParam();
    Studio studio(numberedTracks(setting.tracks + 1),
                  {.surfaces = setting.surfaces, .endOfSession = setting.endOfSession, .redrawOnBank = false});
    ASSERT_TRUE(studio.mapSession(120s));
    EXPECT_EQ(displaysOf(studio.shown().session), displayNames(setting.tracks)); // all but the last
    EXPECT_EQ(studio.hostOffset(), 0);
    EXPECT_EQ(studio.shown().bankOffset, 0);
}

INSTANTIATE_TEST_SUITE_P(Number, LargestMapOn,
                         testing::Values(Setting{520, 1, EndOfSession::fill}, Setting{1040, 2, EndOfSession::blank}));

// What lies more than 64 banks above the view is not reached, and the map begins where the presses ran out.
TEST(Scan, OfALargerSessionBegins64BanksAboveTheView) {
    Studio studio(numberedTracks(600), {.redrawOnBank = false});
    studio.run(2s);
    studio.proTools->scrollTo(590);
    ASSERT_TRUE(studio.mapSession(120s));
    const int first = 590 / 8 * 8 - 63 * 8;
    std::vector<std::string> names = displayNames(600);
    names.erase(names.begin(), names.begin() + first);
    EXPECT_EQ(displaysOf(studio.shown().session), names);
    EXPECT_EQ(studio.hostOffset(), 590);
    EXPECT_EQ(studio.shown().bankOffset, 590 - first);
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
    EXPECT_THAT(studio.presses(), testing::ElementsAre(bankLeft, bankRight, bankRight, bankRight, bankLeft, bankLeft));
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

TEST(Scan, TakesTwoTracksOfOneNameOnEitherSideOfABankForOne) {
    Studio studio(tracksNamed({"Kick", "Snar", "Hat", "Tom1", "Tom2", "OH L", "OH R", "Vox", // the first bank
                               "Vox", "Bass", "Gtr1", "Gtr2", "Key1", "Key2", "Str", "FX"}));
    ASSERT_TRUE(studio.mapSession(30s));
    EXPECT_THAT(displaysOf(studio.shown().session),
                testing::ElementsAre("Kick", "Snar", "Hat", "Tom1", "Tom2", "OH L", "OH R", "Vox", "Bass", "Gtr1",
                                     "Gtr2", "Key1", "Key2", "Str", "FX"));
    EXPECT_EQ(studio.shown().bankOffset, 0);
}

TEST(Scan, TakesAsManyForOneAsAreAlikeOnBothSidesOfABank) {
    Studio studio(tracksNamed({"Kick", "Snar", "Hat", "Tom1", "Tom2", "OH L", "Vox", "Vox", // the first bank
                               "Vox", "Vox", "Gtr1", "Gtr2", "Key1", "Key2", "Str", "FX"}));
    ASSERT_TRUE(studio.mapSession(30s));
    EXPECT_THAT(displaysOf(studio.shown().session),
                testing::ElementsAre("Kick", "Snar", "Hat", "Tom1", "Tom2", "OH L", "Vox", "Vox", "Gtr1", "Gtr2",
                                     "Key1", "Key2", "Str", "FX"));
    EXPECT_EQ(studio.shown().bankOffset, 0);
    studio.proTools->scrollTo(8);
    studio.run(100ms);
    EXPECT_EQ(studio.shown().bankOffset, 6); // where the map has what is shown
    studio.proTools->scrollTo(4);
    studio.run(100ms);
    EXPECT_EQ(studio.shown().bankOffset, -1); // it has no such window
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
