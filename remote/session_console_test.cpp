// The keys of the list of tracks.
#include "remote/testing/console_test.h"

namespace lumbrine::remote {
namespace {

class SessionConsoleTest : public ConsoleTest {
protected:
    // 300 tracks, the first eight on the surfaces, and a page with room for ten.
    SessionConsoleTest() {
        say({0x01, 0x16, 0x00, 0x00, 0x01, 0x2C, 0x08});
        console.look(10);
        sentFor('v');
    }

    SessionList list() const { return console.view().session; }

    void row(std::uint16_t track, bool mute, bool solo) {
        const auto flag = [](bool on) { return static_cast<std::uint8_t>(on ? 1 : 0); };
        say({0x01, 0x1B, static_cast<std::uint8_t>(track >> 8), static_cast<std::uint8_t>(track), 0, 0, 0, flag(mute),
             flag(solo), 0, 0, 0, 0, 0, 0, 0, 0, 0});
    }
};

TEST_F(SessionConsoleTest, MovesThroughTheListAndKeepsTheCursorOnThePage) {
    sentFor(SpecialKey::down, SpecialKey::down, SpecialKey::up);
    EXPECT_EQ(list().cursor, 1);
    EXPECT_EQ(list().first, 0);
    sentFor(SpecialKey::pageDown);
    EXPECT_EQ(list().cursor, 11);
    EXPECT_EQ(list().first, 2);
    sentFor(SpecialKey::end);
    EXPECT_EQ(list().cursor, 299);
    EXPECT_EQ(list().first, 290);
    sentFor(SpecialKey::down, SpecialKey::pageUp);
    EXPECT_EQ(list().cursor, 289);
    EXPECT_EQ(list().first, 289);
    sentFor(SpecialKey::home, SpecialKey::up);
    EXPECT_EQ(list().cursor, 0);
    EXPECT_EQ(list().first, 0);
}

TEST_F(SessionConsoleTest, FollowsThePageAndTheSessionInSize) {
    sentFor(SpecialKey::end);
    console.look(30);
    EXPECT_EQ(list().first, 270);
    say({0x01, 0x16, 0x00, 0x00, 0x00, 0x05, 0x08}); // five tracks
    EXPECT_EQ(list().cursor, 4);
    EXPECT_EQ(list().first, 0);
    say({0x01, 0x16, 0xFF, 0xFF, 0x00, 0x00, 0x08}); // none
    EXPECT_EQ(list().cursor, 0);
    EXPECT_EQ(sentFor(SpecialKey::down, ' ', SpecialKey::enter, 'm', 's', 'c'), Sent{});
    EXPECT_EQ(sentFor('a', 't', 'f', '5', SpecialKey::enter), Sent{});
    EXPECT_TRUE(list().marked.empty());
}

TEST_F(SessionConsoleTest, GoesToTheTrackUnderTheCursorAndToATypedOne) {
    EXPECT_EQ(sentFor(SpecialKey::down, SpecialKey::enter), (Sent{{0x01, 0x0B, 0x00, 0x01}}));
    EXPECT_EQ(sentFor('g', '2', '8', '0', SpecialKey::enter), (Sent{{0x01, 0x0B, 0x01, 0x17}}));
    EXPECT_EQ(list().cursor, 279);
    EXPECT_EQ(list().first, 276); // with some of what comes before
    sentFor('g', '2', SpecialKey::enter);
    EXPECT_EQ(list().first, 0);
    sentFor('g', '3', '0', '0', SpecialKey::enter);
    EXPECT_EQ(list().first, 290);
}

TEST_F(SessionConsoleTest, MovesTheSurfaces) {
    EXPECT_EQ(sentFor('{', '[', '}', ']', 'R'),
              (Sent{{0x01, 0x0A, 0}, {0x01, 0x0A, 1}, {0x01, 0x0A, 2}, {0x01, 0x0A, 3}, {0x01, 0x0C}}));
}

TEST_F(SessionConsoleTest, MarksTracksOneAfterAnother) {
    sentFor(' ', ' ', SpecialKey::down, ' ');
    EXPECT_THAT(list().marked, ::testing::ElementsAre(0, 1, 3));
    sentFor(SpecialKey::home, ' ');
    EXPECT_THAT(list().marked, ::testing::ElementsAre(1, 3));
    sentFor('u');
    EXPECT_TRUE(list().marked.empty());
}

TEST_F(SessionConsoleTest, ForgetsMarksAfterTheEndOfTheSession) {
    sentFor(' ', SpecialKey::end, ' ');
    say({0x01, 0x16, 0x00, 0x00, 0x00, 0x05, 0x08});
    EXPECT_THAT(list().marked, ::testing::ElementsAre(0));
}

TEST_F(SessionConsoleTest, SetsTheFadersOfTheMarkedTracks) {
    sentFor(' ', ' ');
    EXPECT_EQ(sentFor('f', '5', '0', '.', '5', SpecialKey::enter), // 8273 of 16383
              (Sent{{0x01, 0x23, 2, 0, 0, 0x20, 0x51, 0, 1, 0x20, 0x51}}));
    EXPECT_EQ(sentFor('f', '1', '0', '1', SpecialKey::enter), Sent{});
    EXPECT_EQ(sentFor('f', '-', '1', SpecialKey::enter), Sent{});
    EXPECT_EQ(sentFor('f', SpecialKey::enter), Sent{});
}

TEST_F(SessionConsoleTest, SetsTheAutomationModeOfTheMarkedTracks) {
    sentFor(' ', SpecialKey::end, ' ');
    EXPECT_EQ(sentFor('a', 't'), (Sent{{0x01, 0x20, 5, 2, 0, 0, 0x01, 0x2B}}));
    EXPECT_EQ(sentFor('a', 'x'), Sent{});
}

TEST_F(SessionConsoleTest, TakesTheTrackUnderTheCursorWhereNoneIsMarked) {
    sentFor(SpecialKey::down);
    EXPECT_EQ(sentFor('a', 'r', 'm', 's'),
              (Sent{{0x01, 0x20, 2, 1, 0, 1}, {0x01, 0x21, 1, 1, 0, 1}, {0x01, 0x22, 1, 1, 0, 1}}));
}

TEST_F(SessionConsoleTest, MutesAndSolosUnlessAllAreAlready) {
    row(10, true, false);
    row(11, true, true);
    sentFor('g', '1', '1', SpecialKey::enter, ' ', ' ');
    EXPECT_EQ(sentFor('m', 's'), (Sent{{0x01, 0x21, 0, 2, 0, 10, 0, 11}, {0x01, 0x22, 1, 2, 0, 10, 0, 11}}));
    row(10, false, true);
    EXPECT_EQ(sentFor('m', 's'), (Sent{{0x01, 0x21, 1, 2, 0, 10, 0, 11}, {0x01, 0x22, 0, 2, 0, 10, 0, 11}}));
}

TEST_F(SessionConsoleTest, TakesNoTrackForMutedThatASoloElsewhereSilences) {
    say({0x01, 0x12, 0x07, 0x00, 0x00}); // the strips have settled
    say({0x01, 0x13, 0x02, 0x00, 0x00}); // the mute of the first one blinks
    EXPECT_EQ(sentFor('m'), (Sent{{0x01, 0x21, 1, 1, 0, 0}}));
    say({0x01, 0x13, 0x01, 0x00, 0x00});
    EXPECT_EQ(sentFor('m'), (Sent{{0x01, 0x21, 0, 1, 0, 0}}));
}

TEST_F(SessionConsoleTest, SendsManyMembersInSeveralCommands) {
    for (int i = 0; i < 300; ++i)
        sentFor(' ');
    const Sent sent = sentFor('a', 't');
    ASSERT_EQ(sent.size(), 2u);
    EXPECT_EQ(sent[0].size(), 4u + 2 * 255);
    EXPECT_EQ(sent[1].size(), 4u + 2 * 45);
    EXPECT_EQ(sentFor('f', '0', SpecialKey::enter).size(), 2u);
}

TEST_F(SessionConsoleTest, AsksForModesAndPansOfThePage) {
    sentFor(SpecialKey::pageDown);
    EXPECT_EQ(sentFor('c'), (Sent{{0x01, 0x24, 0, 1, 10}}));
    console.look(1000);
    EXPECT_EQ(sentFor('c'), (Sent{{0x01, 0x24, 0, 0, 255}}));
    say({0x01, 0x16, 0x00, 0x00, 0x00, 0x05, 0x08});
    EXPECT_EQ(sentFor('c'), (Sent{{0x01, 0x24, 0, 0, 5}}));
}

TEST_F(SessionConsoleTest, OnlyLooksAboutWhileAnotherIsInControl) {
    say(busyAnswer);
    receiver.taken();
    EXPECT_EQ(sentFor(SpecialKey::down, ' ', SpecialKey::enter, 'm', 's', 'c', '[', 'R'), Sent{});
    EXPECT_EQ(sentFor('a', 't', 'f', '1', SpecialKey::enter, 'g', '3', SpecialKey::enter), Sent{});
    EXPECT_THAT(list().marked, ::testing::ElementsAre(1));
    EXPECT_EQ(sentFor('T'), (Sent{{0x01, 0x25}, {0x01, 0x00}}));
}

} // namespace
} // namespace lumbrine::remote
