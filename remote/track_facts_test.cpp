#include "remote/testing/wire_samples.h"
#include "remote/track_facts.h"

namespace lumbrine::remote {
namespace {

FaderValue unit(double value) {
    return FaderValue::ofUnit(value);
}

// Tracks 9 to 16 of 24 are on the surfaces, and the strips have settled there.
SessionPicture settledPicture() {
    SessionPicture picture;
    picture.apply(BankPos{8, 24, 8});
    picture.apply(Fader{strip(7), unit(0.1)});
    return picture;
}

const TrackRow vox{.index = 9,
                   .fader = unit(0.25),
                   .mute = true,
                   .solo = false,
                   .record = true,
                   .color = 0x102030,
                   .inputMonitor = true,
                   .select = true,
                   .name = "Lead Vox",
                   .comment = "take 3"};

TEST(TrackFacts, ComeFromEveryMessageThatHasThem) {
    SessionPicture picture;
    picture.apply(BankPos{std::nullopt, 24, 8});
    picture.apply(vox);
    picture.apply(SessAutoChunk{9, {3}});
    picture.apply(SessPanChunk{9, {SessPan{PanSide::right, {4, false}}}});
    EXPECT_EQ(factsOf(picture, std::nullopt, 9), (TrackFacts{.name = "Lead Vox",
                                                             .fader = unit(0.25),
                                                             .lights = {Light::on, false, Light::on},
                                                             .inputMonitor = true,
                                                             .select = true,
                                                             .color = 0x102030,
                                                             .autoMode = 3,
                                                             .pan = {PanSide::right, {4, false}},
                                                             .comment = "take 3"}));
    EXPECT_EQ(factsOf(picture, std::nullopt, 10), TrackFacts{});
}

TEST(TrackFacts, AreThoseOfTheStripThatShowsTheTrack) {
    SessionPicture picture = settledPicture();
    picture.apply(vox);
    picture.apply(Fader{strip(1), unit(0.5)});
    picture.apply(Switches{{{}, {Light::blinking, true, Light::off}}});
    picture.apply(AutoModes{{1, 2}});
    picture.apply(Pan{strip(1), PanSide::left, {1, false}});
    const TrackFacts facts = factsOf(picture, 8, 9);
    EXPECT_EQ(facts.strip, strip(1));
    EXPECT_EQ(facts.name, "Lead Vox");
    EXPECT_EQ(facts.fader, unit(0.5));
    EXPECT_EQ(facts.lights, (StripLights{Light::blinking, true, Light::off}));
    EXPECT_EQ(facts.color, 0x102030u);
    EXPECT_EQ(facts.autoMode, 2);
    EXPECT_EQ(facts.pan, (SessPan{PanSide::left, {1, false}}));
    EXPECT_FALSE(facts.select);
    EXPECT_EQ(facts.comment, "take 3");
}

TEST(TrackFacts, KeepWhatTheStripDoesNotShow) {
    SessionPicture picture = settledPicture();
    picture.apply(SessAutoChunk{8, {4}});
    picture.apply(SessPanChunk{8, {SessPan{PanSide::right, {9, false}}}});
    picture.apply(TrackName{strip(0), "Kick"});
    EXPECT_EQ(factsOf(picture, 8, 8).autoMode, 4);
    EXPECT_EQ(factsOf(picture, 8, 8).pan, (SessPan{PanSide::right, {9, false}}));
    EXPECT_EQ(factsOf(picture, 8, 8).name, "Kick");
    picture.apply(FullName{strip(0), "Kick In"});
    EXPECT_EQ(factsOf(picture, 8, 8).name, "Kick In");
}

TEST(TrackFacts, AreNotThoseOfAStripThatHasNotSettledThere) {
    SessionPicture picture = settledPicture();
    picture.apply(Fader{strip(0), unit(0.5)});
    picture.apply(BankPos{16, 24, 8}); // on its way, the values of tracks 9 to 16 still there
    EXPECT_EQ(factsOf(picture, 16, 16).strip, strip(0));
    EXPECT_EQ(factsOf(picture, 16, 16).fader, std::nullopt);
    picture.apply(Fader{strip(0), unit(0.75)});
    EXPECT_EQ(factsOf(picture, 16, 16).fader, std::nullopt);
    picture.apply(Fader{strip(7), unit(0.1)}); // the last one
    EXPECT_EQ(factsOf(picture, 16, 16).fader, unit(0.75));
}

TEST(TrackFacts, FindTheTrackOnAStripAndTheOtherWayRound) {
    const SessionPicture picture = settledPicture();
    EXPECT_EQ(trackOn(picture, 8, strip(3)), 11);
    EXPECT_EQ(stripShowing(picture, 8, 11), strip(3));
    EXPECT_EQ(trackOn(picture, std::nullopt, strip(3)), std::nullopt);
    EXPECT_EQ(stripShowing(picture, std::nullopt, 11), std::nullopt);
    EXPECT_EQ(trackOn(picture, 8, strip(8)), std::nullopt); // not on a surface
    EXPECT_EQ(stripShowing(picture, 8, 7), std::nullopt);
    EXPECT_EQ(stripShowing(picture, 8, 16), std::nullopt);
    EXPECT_EQ(trackOn(picture, 20, strip(4)), std::nullopt); // behind the last track
    EXPECT_EQ(stripShowing(picture, 20, 24), std::nullopt);
}

} // namespace
} // namespace lumbrine::remote
