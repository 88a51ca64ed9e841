#include "remote/screen_layout.h"
#include "remote/strip_column.h"
#include "remote/terminal_text.h"
#include "remote/testing/wire_samples.h"

namespace lumbrine::remote {
namespace {

SessionPicture eightTracks() {
    SessionPicture picture;
    picture.apply(BankPos{8, 24, 8});
    for (int i = 0; i < 8; ++i) {
        picture.apply(TrackName{strip(i), "Tr" + std::to_string(i + 9) + " "});
        picture.apply(FullName{strip(i), "Track " + std::to_string(i + 9)});
    }
    return picture;
}

ViewState connectedView() {
    ViewState view;
    view.link = LinkState::connected;
    view.receiver = "127.0.0.1:52700";
    return view;
}

std::string page(const Canvas& canvas) {
    std::string text;
    for (int row = 0; row < canvas.rows(); ++row)
        text += canvas.line(row) + "\n";
    return text;
}

// A strip drawn by itself, 16 rows high: rows 0-5 above the fader, 6-13 the fader, 14 its value, 15 automation.
Canvas drawn(const StripPicture& picture, StripLook look = {.number = 3}, int width = 8) {
    Canvas canvas(16, width);
    drawStrip(canvas, {0, 0, width, 16}, picture, look);
    return canvas;
}

TEST(ScreenLayout, ShowsReceiverTransportAndBankInTheTitle) {
    SessionPicture picture = eightTracks();
    EXPECT_EQ(screenOf(picture, connectedView(), 24, 80).line(0),
              " lumbrine-remote  127.0.0.1:52700           ■ stop  tracks 9-16 of 24  pan left");
    picture.apply(Transport{true, false});
    picture.apply(PanMode{true});
    picture.apply(BankPos{20, 24, 8});
    EXPECT_THAT(screenOf(picture, connectedView(), 24, 80).line(0),
                ::testing::HasSubstr("▶ PLAY  tracks 21-24 of 24  pan right"));
    picture.apply(Transport{true, true});
    picture.apply(BankPos{std::nullopt, 24, 8});
    EXPECT_THAT(screenOf(picture, connectedView(), 24, 80).line(0), ::testing::HasSubstr("● REC  tracks ? of 24"));
}

TEST(ScreenLayout, ShowsTheLinkInWords) {
    const auto wordsFor = [](LinkState link, const std::string& receiver) {
        ViewState view;
        view.link = link;
        view.receiver = receiver;
        return screenOf({}, view, 24, 80).line(1);
    };
    EXPECT_EQ(wordsFor(LinkState::searching, ""), " Searching for a receiver on the network ...");
    EXPECT_EQ(wordsFor(LinkState::searching, "a:1"), " Calling the receiver ...");
    EXPECT_EQ(wordsFor(LinkState::connected, "a:1"), " Connected.");
    EXPECT_EQ(wordsFor(LinkState::busy, "a:1"), " Another device is in control: press T to take over.");
    EXPECT_EQ(wordsFor(LinkState::takenOver, "a:1"), " Another device has taken over: press T to take control back.");
    EXPECT_EQ(wordsFor(LinkState::lost, "a:1"), " The receiver has gone silent. Still calling it ...");
}

TEST(ScreenLayout, FitsEightStripsWithAScaleInto80Columns) {
    const Canvas canvas = screenOf(eightTracks(), connectedView(), 24, 80);
    EXPECT_EQ(canvas.line(4), "    Tr9      Tr10     Tr11     Tr12     Tr13     Tr14     Tr15     Tr16");
    EXPECT_EQ(canvas.line(5), "    Track 9  Track 10 Track 11 Track 12 Track 13 Track 14 Track 15 Track 16");
    EXPECT_THAT(canvas.line(9), ::testing::StartsWith("100"));
    EXPECT_THAT(canvas.line(19), ::testing::StartsWith("  0"));
}

TEST(ScreenLayout, FitsSixteenStripsInto80Columns) {
    SessionPicture picture = eightTracks();
    picture.apply(BankPos{0, 24, 16});
    picture.apply(TrackName{strip(15), "Last"});
    const Canvas canvas = screenOf(picture, connectedView(), 24, 80);
    EXPECT_EQ(canvas.line(4).substr(75), "Last");
    EXPECT_EQ(canvas.line(3).substr(75), "16");
}

TEST(ScreenLayout, GivesTheFadersTheRowsOfALargerWindow) {
    const Canvas canvas = screenOf(eightTracks(), connectedView(), 50, 200);
    EXPECT_THAT(canvas.line(9), ::testing::StartsWith("100"));
    EXPECT_THAT(canvas.line(45), ::testing::StartsWith("  0"));
}

TEST(ScreenLayout, SaysWhenTheWindowIsTooSmall) {
    EXPECT_EQ(screenOf(eightTracks(), connectedView(), 20, 80).line(0), "Too small: needs 40 x 21");
    EXPECT_EQ(screenOf(eightTracks(), connectedView(), 24, 24).line(0), "Too small: needs 40 x 21");
    EXPECT_THAT(page(screenOf(eightTracks(), connectedView(), 21, 40)), ::testing::HasSubstr("Tr16"));
    EXPECT_EQ(page(screenOf(eightTracks(), connectedView(), 0, 0)), "");
}

TEST(ScreenLayout, ShowsTheStripUnderTheCursorInWords) {
    SessionPicture picture = eightTracks();
    picture.apply(Fader{strip(2), FaderValue::ofUnit(0.5)});
    picture.apply(AutoModes{{0, 0, 10}});
    picture.apply(TrackRow{.index = 10, .comment = "warm"});
    ViewState view = connectedView();
    view.cursor = strip(2);
    EXPECT_EQ(screenOf(picture, view, 24, 80).line(22),
              " Strip 3: Track 11  fader 50.0  automation trim+touch  \"warm\"");
    EXPECT_EQ(screenOf({}, view, 24, 80).line(22), " Strip 3: no track  fader 0.0  automation unknown");
}

TEST(ScreenLayout, DoesNotWrapTracksAfterTheLastIndexToTheFirst) {
    SessionPicture picture;
    picture.apply(BankPos{0xFFFE, 0xFFFF, 8});
    picture.apply(TrackRow{.index = 1, .comment = "warm"});
    ViewState view = connectedView();
    view.cursor = strip(3);
    EXPECT_EQ(screenOf(picture, view, 24, 80).line(22), " Strip 4: no track  fader 0.0  automation unknown");
}

TEST(ScreenLayout, ShowsPromptsInsteadOfTheKeys) {
    ViewState view = connectedView();
    EXPECT_THAT(screenOf({}, view, 24, 80).line(23), ::testing::HasSubstr("? help"));
    view.prompt = Prompt::goToTrack;
    view.typed = "12";
    EXPECT_EQ(screenOf({}, view, 24, 80).line(23), " Go to track: 12_   (Enter goes there, Esc stays)");
    view.prompt = Prompt::autoMode;
    EXPECT_THAT(screenOf({}, view, 24, 80).line(23), ::testing::HasSubstr("r read  t touch"));
}

TEST(ScreenLayout, ListsTheKeysWithinTheSmallestWindow) {
    ViewState view = connectedView();
    view.help = true;
    const Canvas canvas = screenOf({}, view, 21, 80);
    EXPECT_THAT(page(canvas), ::testing::HasSubstr("take over control"));
    EXPECT_THAT(page(canvas), ::testing::HasSubstr("quit"));
    EXPECT_EQ(canvas.line(20), " Any key goes back.");
}

TEST(ScreenLayout, IsInJapaneseForAUserWhoPrefersIt) {
    ViewState view = connectedView();
    view.text = Bilingual(true);
    const Canvas canvas = screenOf(eightTracks(), view, 24, 80);
    EXPECT_THAT(canvas.line(0), ::testing::HasSubstr(" ■ 停止  トラック 9-16 / 全 24  パン 左"));
    EXPECT_EQ(canvas.line(1), " 接続中");
    EXPECT_THAT(canvas.line(22), ::testing::StartsWith(" ストリップ 1: "));
    for (const Page page : {Page::strips, Page::session})
        for (const Prompt prompt : {Prompt::none, Prompt::goToTrack, Prompt::autoMode, Prompt::pan, Prompt::fader}) {
            view.page = page;
            view.prompt = prompt;
            const std::string whole = screenOf(eightTracks(), view, 24, 200).line(23);
            EXPECT_EQ(screenOf(eightTracks(), view, 24, 80).line(23), whole); // nothing is cut
        }
}

TEST(ScreenLayout, LetsNoNameSteerTheTerminal) {
    SessionPicture picture = eightTracks();
    picture.apply(TrackName{strip(0), "\x1B[2J"});
    picture.apply(FullName{strip(0), "\x1B]0;x\x07"});
    picture.apply(TrackRow{.index = 8, .comment = "\x1B"});
    ViewState view = connectedView();
    view.receiver = "\x1B:1";
    const std::string text = page(screenOf(picture, view, 24, 80));
    EXPECT_EQ(text.find('\x1B'), std::string::npos);
    EXPECT_EQ(text.find('\x07'), std::string::npos);
}

TEST(StripColumn, ShowsNumberSelectAndNames) {
    StripPicture picture;
    picture.name = "Kick";
    picture.fullName = "Kick In Left";
    EXPECT_EQ(drawn(picture).line(0), "3");
    EXPECT_EQ(drawn(picture).line(1), "Kick");
    EXPECT_EQ(drawn(picture).line(2), "Kick In");
    picture.select = true;
    EXPECT_EQ(drawn(picture).line(0), "3 selec");
    EXPECT_EQ(drawn(picture, {.number = 16}, 5).line(0), "16 ◆");
}

TEST(StripColumn, MarksTheCursorByReversingTheNumber) {
    EXPECT_TRUE(drawn({}, {.number = 3, .cursor = true}).at(0, 0).style.reverse);
    EXPECT_FALSE(drawn({}, {.number = 3}).at(0, 0).style.reverse);
}

TEST(StripColumn, ShowsTheTracksColorAfterItsName) {
    StripPicture picture;
    picture.name = "Kick";
    picture.color = 0x102030;
    EXPECT_EQ(drawn(picture).at(1, 6).style.background, 0x102030u);
    EXPECT_EQ(drawn(picture).at(1, 7).style.background, std::nullopt); // the gap to the next strip
}

TEST(StripColumn, CutsWideNamesBetweenCharacters) {
    StripPicture picture;
    picture.fullName = "ボーカル";
    EXPECT_EQ(drawn(picture).line(2), "ボーカ");
}

TEST(StripColumn, ShowsLightsThatAreOnAndDotsForThoseThatAreOff) {
    StripPicture picture;
    EXPECT_EQ(drawn(picture).line(3), "· · · ·");
    picture.lights = {Light::on, true, Light::on};
    picture.inputMonitor = true;
    EXPECT_EQ(drawn(picture).line(3), "M S R I");
    EXPECT_EQ(drawn(picture, {.number = 3}, 5).line(3), "MSRI");
    EXPECT_EQ(drawn(picture).at(3, 0).style, (Style{.ink = Ink::yellow, .bold = true, .reverse = true}));
}

TEST(StripColumn, LightsABlinkingLightHalfOfTheTime) {
    StripPicture picture;
    picture.lights = {Light::blinking, false, Light::off};
    EXPECT_TRUE(drawn(picture, {.number = 3, .blinkOn = true}).at(3, 0).style.reverse);
    EXPECT_FALSE(drawn(picture, {.number = 3, .blinkOn = false}).at(3, 0).style.reverse);
    EXPECT_EQ(drawn(picture, {.number = 3, .blinkOn = false}).line(3), "M · · ·");
}

TEST(StripColumn, ShowsThePansOfBothSides) {
    StripPicture picture;
    picture.pan = {RingPosition{1, false}, RingPosition{6, true}};
    EXPECT_EQ(drawn(picture).line(4), "L●────");
    EXPECT_EQ(drawn(picture).line(5), "R──◉──");
    picture.pan = {RingPosition{0, false}, RingPosition{11, false}};
    EXPECT_EQ(drawn(picture).line(4), "L─────");
    EXPECT_EQ(drawn(picture).line(5), "R────●");
}

TEST(StripColumn, ShowsPansInAFewCharactersWhereThereIsNoRoom) {
    StripPicture picture;
    picture.pan = {RingPosition{4, false}, RingPosition{9, false}};
    EXPECT_EQ(drawn(picture, {.number = 3}, 5).line(4), "L<2");
    EXPECT_EQ(drawn(picture, {.number = 3}, 5).line(5), "R3>");
    picture.pan = {RingPosition{6, true}, RingPosition{0, false}};
    EXPECT_EQ(drawn(picture, {.number = 3}, 5).line(4), "LC");
    EXPECT_EQ(drawn(picture, {.number = 3}, 5).line(5), "R·");
}

TEST(StripColumn, DimsTheSideThatTheVpotsDoNotTurn) {
    StripPicture picture;
    picture.pan = {RingPosition{6, false}, RingPosition{6, false}};
    EXPECT_FALSE(drawn(picture, {.number = 3, .panRight = false}).at(4, 0).style.dim);
    EXPECT_TRUE(drawn(picture, {.number = 3, .panRight = false}).at(5, 0).style.dim);
    EXPECT_TRUE(drawn(picture, {.number = 3, .panRight = true}).at(4, 0).style.dim);
}

TEST(StripColumn, MovesTheKnobByHalfRowsFromBottomToTop) {
    StripPicture picture;
    EXPECT_EQ(drawn(picture).line(13), " ▄▄▄");
    picture.fader = FaderValue::ofUnit(0.07); // one half row of sixteen
    EXPECT_EQ(drawn(picture).line(13), " ▀▀▀");
    picture.fader = FaderValue::ofUnit(1.0);
    EXPECT_EQ(drawn(picture).line(6), " ▀▀▀");
    EXPECT_EQ(drawn(picture).line(13), "  │");
    EXPECT_EQ(drawn(picture).line(14), "100.0");
    EXPECT_EQ(drawn(picture, {.number = 3}, 5).line(6), "▀▀");
    EXPECT_EQ(drawn(picture, {.number = 3}, 5).line(14), "100");
}

TEST(StripColumn, FillsTheMetersInEighthsOfARow) {
    StripPicture picture;
    picture.meters = {12, 6};
    const Canvas canvas = drawn(picture);
    EXPECT_EQ(canvas.at(6, 5).text, "█");
    EXPECT_EQ(canvas.at(6, 5).style.ink, Ink::red);
    EXPECT_EQ(canvas.at(9, 6).text, " ");
    EXPECT_EQ(canvas.at(10, 6).text, "█");
    EXPECT_EQ(canvas.at(13, 6).style.ink, Ink::green);
    picture.meters = {1, 0}; // 64 eighths for 12 levels
    EXPECT_EQ(drawn(picture).at(13, 5).text, "▅");
}

TEST(StripColumn, NamesTheAutomationModeAsLongAsThereIsRoom) {
    StripPicture picture;
    EXPECT_EQ(drawn(picture).line(15), "·");
    picture.autoMode = 3;
    EXPECT_EQ(drawn(picture).line(15), "latch");
    EXPECT_EQ(drawn(picture, {.number = 3}, 5).line(15), "ltch");
    picture.autoMode = 11;
    EXPECT_EQ(drawn(picture).line(15), "Tlch");
    EXPECT_EQ(drawn(picture, {.number = 3}, 12).line(15), "trim+latch");
}

} // namespace
} // namespace lumbrine::remote
