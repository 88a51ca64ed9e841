#include "remote/key_help.h"
#include "remote/screen_layout.h"
#include "remote/session_page.h"
#include "remote/terminal_text.h"
#include "remote/testing/wire_samples.h"

namespace lumbrine::remote {
namespace {

// 40 tracks, the surfaces at the ninth.
SessionPicture fortyTracks() {
    SessionPicture picture;
    picture.apply(BankPos{8, 40, 8});
    for (std::uint16_t i = 0; i < 40; ++i)
        picture.apply(TrackRow{.index = i,
                               .fader = FaderValue::ofUnit(i / 40.0),
                               .name = "Track " + std::to_string(i + 1),
                               .comment = "comment " + std::to_string(i + 1)});
    picture.apply(Fader{strip(7), FaderValue::ofUnit(0)}); // settled
    return picture;
}

ViewState sessionView(SessionList list = {}) {
    ViewState view;
    view.link = LinkState::connected;
    view.receiver = "127.0.0.1:52700";
    view.page = Page::session;
    view.session = std::move(list);
    return view;
}

TEST(SessionPage, ListsATrackOnEachLineOfASmallTerminal) {
    SessionPicture picture = fortyTracks();
    picture.apply(SessAutoChunk{0, {1, 10, 0}});
    picture.apply(SessPanChunk{0, {SessPan{PanSide::left, {3, false}}, SessPan{PanSide::right, {6, true}}}});
    picture.apply(TrackRow{.index = 1,
                           .fader = FaderValue::ofUnit(1.0),
                           .mute = true,
                           .record = true,
                           .select = true,
                           .name = "Lead Vox with a long name",
                           .comment = "comp of takes 3, 5 and 8"});
    const Canvas canvas = screenOf(picture, sessionView(), 24, 80);
    EXPECT_THAT(canvas.line(0), ::testing::HasSubstr("tracks 9-16 of 40"));
    EXPECT_EQ(canvas.line(2), "   st track name                 fader M S R I   auto pan  comment");
    EXPECT_EQ(canvas.line(3), "▶         1 Track 1                0.0 · · · ·   read L<3  comment 1");
    EXPECT_EQ(canvas.line(4), "          2 Lead Vox with a long 100.0 M · R · ◆ Ttch RC   comp of takes 3, 5 an");
    EXPECT_EQ(canvas.line(5), "          3 Track 3                5.0 · · · ·   ·    ·    comment 3");
    EXPECT_THAT(canvas.line(21), ::testing::HasSubstr("19 Track 19"));
    EXPECT_EQ(canvas.line(22), " Track 1: Track 1  fader 0.0  automation read  \"comment 1\"");
    EXPECT_THAT(canvas.line(23), ::testing::StartsWith(" ↑ ↓ track  Enter go there"));
}

TEST(SessionPage, NumbersTheStripsThatShowATrack) {
    const Canvas canvas = screenOf(fortyTracks(), sessionView(), 24, 80);
    EXPECT_THAT(canvas.line(3 + 7), ::testing::StartsWith("          8 "));
    EXPECT_THAT(canvas.line(3 + 8), ::testing::StartsWith("    1     9 "));
    EXPECT_THAT(canvas.line(3 + 15), ::testing::StartsWith("    8    16 "));
    EXPECT_THAT(canvas.line(3 + 16), ::testing::StartsWith("         17 "));
    EXPECT_TRUE(canvas.at(3 + 8, 12).style.bold);
    EXPECT_FALSE(canvas.at(3 + 7, 12).style.bold);
}

TEST(SessionPage, ShowsWhereTheSurfacesWereAMomentAgo) {
    SessionPicture picture = fortyTracks();
    picture.apply(BankPos{std::nullopt, 40, 8});
    ViewState view = sessionView();
    EXPECT_THAT(screenOf(picture, view, 24, 80).line(3 + 8), ::testing::StartsWith("          9 "));
    view.lastOffset = 8;
    EXPECT_THAT(screenOf(picture, view, 24, 80).line(3 + 8), ::testing::StartsWith("    1     9 "));
    EXPECT_THAT(screenOf(picture, view, 24, 80).line(0), ::testing::HasSubstr("tracks 9-16 of 40"));
}

TEST(SessionPage, MarksTracksAndBeginsWhereTheListDoes) {
    const Canvas canvas =
        screenOf(fortyTracks(), sessionView({.cursor = 25, .first = 21, .marked = {21, 22, 39}}), 24, 80);
    EXPECT_THAT(canvas.line(3), ::testing::StartsWith(" *       22 Track 22"));
    EXPECT_THAT(canvas.line(7), ::testing::StartsWith("▶        26 Track 26"));
    EXPECT_THAT(canvas.line(21), ::testing::StartsWith(" *       40 Track 40"));
    EXPECT_THAT(canvas.line(22), ::testing::StartsWith(" 3 tracks marked.  Track 26: Track 26"));
    EXPECT_THAT(screenOf(fortyTracks(), sessionView({.marked = {3}}), 24, 80).line(22),
                ::testing::StartsWith(" 1 track marked.  "));
}

TEST(SessionPage, HasLongerNamesModesInWordsAndFadersOnAWidePage) {
    SessionPicture picture = fortyTracks();
    picture.apply(SessAutoChunk{0, {12}});
    picture.apply(TrackRow{.index = 0, .fader = FaderValue::ofUnit(0.5), .name = "Lead Vox with a long name"});
    const Canvas canvas = screenOf(picture, sessionView(), 50, 200);
    EXPECT_EQ(canvas.line(3),
              "▶         1 Lead Vox with a long name        ━━━━━━━━━━█──────────  50.0 · · · ·   trim+write ·");
    EXPECT_THAT(canvas.line(3 + 39), ::testing::HasSubstr("40 Track 40"));
}

TEST(SessionPage, KeepsColumnsInLineBesideWideCharacters) {
    SessionPicture picture = fortyTracks();
    picture.apply(TrackRow{.index = 0, .name = "ボーカル ハモ", .comment = "2番のあと"});
    picture.apply(TrackRow{.index = 1, .name = "ギターソロとリズムギター", .comment = "ルームマイク、少し遠い"});
    const Canvas canvas = screenOf(picture, sessionView(), 24, 80);
    for (const int line : {3, 4}) {
        EXPECT_EQ(canvas.at(line, 37).text, "·"); // no fader
        EXPECT_EQ(canvas.at(line, 39).text, "·"); // mute
    }
    EXPECT_EQ(canvas.at(3, 59).text, "2");
    EXPECT_EQ(canvas.at(4, 59).text, "ル");
    EXPECT_EQ(canvas.at(4, 12 + 18).text, "ギ"); // the tenth character of a name that goes on
    EXPECT_EQ(canvas.at(4, 32).text, " ");
}

TEST(SessionPage, ShowsATracksColorAfterItsName) {
    SessionPicture picture = fortyTracks();
    picture.apply(TrackRow{.index = 2, .color = 0x102030, .name = "Kick"});
    const Canvas canvas = screenOf(picture, sessionView(), 24, 80);
    EXPECT_EQ(canvas.at(5, 31).style.background, 0x102030u);
    EXPECT_EQ(canvas.at(5, 32).style.background, std::nullopt);
}

TEST(SessionPage, SaysWhenThereIsNoMapAndWhenTheWindowIsTooSmall) {
    EXPECT_THAT(screenOf({}, sessionView(), 24, 80).line(4), ::testing::HasSubstr("no track map yet"));
    EXPECT_EQ(screenOf({}, sessionView(), 24, 59).line(0), "Too small: needs 60 x 21");
    EXPECT_EQ(screenOf({}, sessionView(), 20, 80).line(0), "Too small: needs 60 x 21");
    EXPECT_THAT(screenOf(fortyTracks(), sessionView(), 21, 60).line(3), ::testing::StartsWith("▶         1 Track 1"));
}

TEST(SessionPage, HasRoomForAllButFiveRowsOfAPage) {
    EXPECT_EQ(tracksOnPage(24), 19);
    EXPECT_EQ(tracksOnPage(50), 45);
    EXPECT_EQ(tracksOnPage(0), 0);
}

TEST(SessionPage, LetsNoNameSteerTheTerminal) {
    SessionPicture picture = fortyTracks();
    picture.apply(TrackRow{.index = 0, .name = "\x1B[2J", .comment = "\x1B]0;x\x07"});
    const Canvas canvas = screenOf(picture, sessionView(), 24, 80);
    for (int row = 0; row < canvas.rows(); ++row)
        EXPECT_EQ(canvas.line(row).find_first_of("\x1B\x07"), std::string::npos) << row;
}

TEST(KeyHelp, FitsTheSmallestPages) {
    for (const Page page : {Page::strips, Page::session}) {
        EXPECT_LE(keysOf(page).size(), static_cast<std::size_t>(minRows - 4));
        for (const KeyHelp& line : keysOf(page)) {
            EXPECT_LE(columnsOf(line.keys), 20) << line.keys;
            EXPECT_LE(columnsOf(line.meaning), 57) << line.meaning;
            EXPECT_LE(columnsOf(line.japanese), 57) << line.japanese;
        }
    }
}

TEST(KeyHelp, IsThatOfThePage) {
    ViewState view = sessionView();
    view.help = true;
    const Canvas canvas = screenOf({}, view, 24, 80);
    EXPECT_EQ(canvas.line(3), "  ↑ ↓                  another track");
    EXPECT_EQ(canvas.line(23), " Any key goes back.");
}

} // namespace
} // namespace lumbrine::remote
