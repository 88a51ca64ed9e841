// What a scanned session takes over from the one before.
#include "model/testing/session_columns.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumbrine {
namespace {

using testing::Each;
using testing::ElementsAre;

// Of which everything is known.
Session knownSession() {
    Session session = Session::of({"Kick", "Snar"});
    for (Track& track : session.tracks)
        track = {.display = track.display,
                 .name = track.display + " in full",
                 .color = RGBColor(0x112233),
                 .mute = true,
                 .solo = true,
                 .record = true,
                 .inputMonitor = true,
                 .select = true,
                 .fader = 0.5,
                 .pan = SessionPan{.known = true, .position = 4},
                 .mode = 3,
                 .comment = "a note"};
    session.listed = true;
    session.surveyed = true;
    return session;
}

TEST(SessionOf, KnowsNothingButTheDisplays) {
    const Session session = Session::of({"Kick", "Snar"});
    EXPECT_THAT(displaysOf(session), ElementsAre("Kick", "Snar"));
    EXPECT_THAT(namesOf(session), testing::IsEmpty());
    EXPECT_FALSE(session.listed);
    EXPECT_FALSE(session.surveyed);
    EXPECT_TRUE(Session{}.empty());
}

TEST(CarryOver, KeepsEverythingButTheFadersOfTheSameSession) {
    Session scanned = Session::of({"Kick", "Snar"});
    scanned.tracks[0].fader = 0.25;
    carryOver(knownSession(), scanned);
    EXPECT_THAT(namesOf(scanned), ElementsAre("Kick in full", "Snar in full"));
    EXPECT_THAT(column(scanned, &Track::color), Each(RGBColor(0x112233)));
    EXPECT_THAT(column(scanned, &Track::mode), Each(3));
    EXPECT_THAT(column(scanned, &Track::comment), Each("a note"));
    EXPECT_THAT(column(scanned, &Track::fader), ElementsAre(0.25, std::nullopt)); // as the scan saw them
    EXPECT_TRUE(scanned.listed);
    EXPECT_TRUE(scanned.surveyed);
}

TEST(CarryOver, KeepsNothingOfAnotherSession) {
    for (const std::vector<std::string>& displays :
         std::vector<std::vector<std::string>>{{"Snar", "Kick"}, {"Kick"}, {"Kick", "Snar", "Hat"}, {"Kick", "Snr"}}) {
        Session scanned = Session::of(displays);
        carryOver(knownSession(), scanned);
        EXPECT_EQ(displaysOf(scanned), displays);
        EXPECT_THAT(namesOf(scanned), testing::IsEmpty());
        EXPECT_THAT(column(scanned, &Track::color), Each(std::nullopt));
        EXPECT_THAT(column(scanned, &Track::mute), Each(false));
        EXPECT_THAT(column(scanned, &Track::mode), Each(autoModeUnknown));
        EXPECT_THAT(column(scanned, &Track::comment), Each(""));
        EXPECT_FALSE(scanned.listed);
        EXPECT_TRUE(scanned.surveyed); // the client's tables have to be emptied
    }
}

} // namespace
} // namespace lumbrine
