#include "remote/terminal_app.h"
#include "remote/testing/console_test.h"

#include <chrono>

namespace lumbrine::remote {
namespace {

using namespace std::chrono_literals;

const Bytes sixteenStrips{0x01, 0x16, 0x00, 0x00, 0x00, 0x18, 0x10};
const Bytes eightStrips{0x01, 0x16, 0x00, 0x00, 0x00, 0x18, 0x08};
const Bytes lostPosition{0x01, 0x16, 0xFF, 0xFF, 0x00, 0x18, 0x08};
const Bytes halfway{0x01, 0x12, 0x00, 0x20, 0x00}; // fader of the first strip: 8192

class TerminalConsoleTest : public ConsoleTest {
protected:
    int cursor() const { return console.view().cursor.index(); }
};

TEST_F(TerminalConsoleTest, MovesTheCursorWithinTheShownStrips) {
    sentFor(SpecialKey::right, SpecialKey::right, SpecialKey::left);
    EXPECT_EQ(cursor(), 1);
    sentFor('8');
    EXPECT_EQ(cursor(), 7);
    sentFor(SpecialKey::right, SpecialKey::tab, '9', '0');
    EXPECT_EQ(cursor(), 7);
    sentFor('1', SpecialKey::left);
    EXPECT_EQ(cursor(), 0);
}

TEST_F(TerminalConsoleTest, ReachesTheOtherSurfaceWhenThereIsOne) {
    say(sixteenStrips);
    sentFor('3', SpecialKey::tab);
    EXPECT_EQ(cursor(), 10);
    sentFor(SpecialKey::tab);
    EXPECT_EQ(cursor(), 2);
    sentFor('0');
    EXPECT_EQ(cursor(), 9);
    say(eightStrips);
    EXPECT_EQ(cursor(), 7);
}

TEST_F(TerminalConsoleTest, PressesTheSwitchesOfTheStripUnderTheCursor) {
    sentFor('3');
    EXPECT_EQ(sentFor('m', 's', 'r', 'i', SpecialKey::enter),
              (Sent{{0x01, 0x04, 2}, {0x01, 0x05, 2}, {0x01, 0x06, 2}, {0x01, 0x0E, 2}, {0x01, 0x0D, 2}}));
}

TEST_F(TerminalConsoleTest, TurnsPans) {
    EXPECT_EQ(sentFor(',', '.', 'c', 'p'),
              (Sent{{0x01, 0x07, 0, 0xFF}, {0x01, 0x07, 0, 0x01}, {0x01, 0x09, 0, 6}, {0x01, 0x08}}));
}

TEST_F(TerminalConsoleTest, MovesThroughTheSession) {
    EXPECT_EQ(sentFor('{', '[', '}', ']', 'R'),
              (Sent{{0x01, 0x0A, 0}, {0x01, 0x0A, 1}, {0x01, 0x0A, 2}, {0x01, 0x0A, 3}, {0x01, 0x0C}}));
}

TEST_F(TerminalConsoleTest, HoldsAFaderWhileItMovesItAndReleasesItAMomentAfterTheLastKey) {
    say(halfway);
    EXPECT_EQ(sentFor(SpecialKey::up), (Sent{{0x01, 0x02, 0}, {0x01, 0x01, 0, 0x21, 0x47}})); // 8519
    EXPECT_TRUE(console.view().held[0]);
    runtime.runFor(599ms);
    EXPECT_EQ(receiver.taken(), (Sent{{0x01, 0x02, 0}}));         // it is still held
    EXPECT_EQ(sentFor('-'), (Sent{{0x01, 0x01, 0, 0x21, 0x26}})); // 8486
    runtime.runFor(599ms);
    EXPECT_EQ(receiver.taken(), (Sent{{0x01, 0x02, 0}}));
    runtime.runFor(1ms);
    EXPECT_EQ(receiver.taken(), (Sent{{0x01, 0x03, 0}}));
    EXPECT_FALSE(console.view().held[0]);
}

TEST_F(TerminalConsoleTest, MovesFadersInThreeStepWidths) {
    say(halfway);
    sentFor(SpecialKey::up);
    EXPECT_NEAR(client.picture().strips[0].fader.unit(), 0.52, 0.0002);
    sentFor('+');
    EXPECT_NEAR(client.picture().strips[0].fader.unit(), 0.522, 0.0003);
    sentFor(SpecialKey::pageUp);
    EXPECT_NEAR(client.picture().strips[0].fader.unit(), 0.622, 0.0004);
    sentFor(SpecialKey::pageDown, SpecialKey::down);
    EXPECT_NEAR(client.picture().strips[0].fader.unit(), 0.502, 0.0006);
}

TEST_F(TerminalConsoleTest, StopsFadersAtTheirEnds) {
    for (int i = 0; i < 12; ++i)
        sentFor(SpecialKey::pageUp);
    EXPECT_EQ(client.picture().strips[0].fader, FaderValue::ofUnit(1.0));
    for (int i = 0; i < 12; ++i)
        sentFor(SpecialKey::pageDown);
    EXPECT_EQ(client.picture().strips[0].fader, FaderValue::ofUnit(0.0));
}

TEST_F(TerminalConsoleTest, GoesToATypedTrack) {
    EXPECT_EQ(sentFor('g', '1', 'x', '8', '9', SpecialKey::backspace, SpecialKey::enter),
              (Sent{{0x01, 0x0B, 0x00, 0x11}}));
    EXPECT_EQ(console.view().prompt, Prompt::none);
    EXPECT_EQ(sentFor('g', SpecialKey::enter), Sent{});
    EXPECT_EQ(sentFor('g', '0', SpecialKey::enter), Sent{});
    EXPECT_EQ(sentFor('g', '9', '9', '9', '9', '9', SpecialKey::enter), Sent{});
}

TEST_F(TerminalConsoleTest, LeavesAPromptWithEscape) {
    EXPECT_EQ(sentFor('g', '1', SpecialKey::escape, 'g'), Sent{});
    EXPECT_EQ(console.view().typed, "");
}

TEST_F(TerminalConsoleTest, SetsTheAutomationModeThatIsAskedFor) {
    EXPECT_EQ(sentFor('a', 't', 'a', 'i', 'a', 'o'),
              (Sent{{0x01, 0x0F, 0, 5}, {0x01, 0x0F, 0, 0}, {0x01, 0x0F, 0, 3}}));
    EXPECT_EQ(sentFor('a', 'x', 'a', SpecialKey::escape), Sent{});
    EXPECT_EQ(console.view().prompt, Prompt::none);
}

TEST_F(TerminalConsoleTest, TurnsAPanToATypedPosition) {
    sentFor('3');
    EXPECT_EQ(sentFor('P', '-', '5', SpecialKey::enter), (Sent{{0x01, 0x09, 2, 1}}));
    EXPECT_EQ(sentFor('P', '0', SpecialKey::enter), (Sent{{0x01, 0x09, 2, 6}}));
    EXPECT_EQ(sentFor('P', '5', SpecialKey::enter), (Sent{{0x01, 0x09, 2, 11}}));
    EXPECT_EQ(sentFor('P', '6', SpecialKey::enter), Sent{});
    EXPECT_EQ(sentFor('P', '-', SpecialKey::enter), Sent{});
    EXPECT_EQ(sentFor('P', '1', SpecialKey::escape), Sent{});
    EXPECT_EQ(console.view().prompt, Prompt::none);
}

TEST_F(TerminalConsoleTest, AnswersNoPromptOnceControlIsGone) {
    sentFor('P', '1');
    say(busyAnswer);
    EXPECT_EQ(sentFor(SpecialKey::enter), Sent{});
    EXPECT_EQ(console.view().prompt, Prompt::none);
}

// ---- Two pages

TEST_F(TerminalConsoleTest, TakesTheCursorToTheOtherPage) {
    say({0x01, 0x16, 0x00, 0x08, 0x00, 0x18, 0x08}); // tracks 9 to 16 of 24
    sentFor('3', 'v');
    EXPECT_EQ(console.view().page, Page::session);
    EXPECT_EQ(console.view().session.cursor, 10);
    sentFor(SpecialKey::down, 'v');
    EXPECT_EQ(console.view().page, Page::strips);
    EXPECT_EQ(cursor(), 3);
    sentFor('v', SpecialKey::home, 'v');
    EXPECT_EQ(cursor(), 3); // no strip shows the first track
}

TEST_F(TerminalConsoleTest, TurnsPagesWithoutControl) {
    say(busyAnswer);
    EXPECT_EQ(sentFor('v'), Sent{});
    EXPECT_EQ(console.view().page, Page::session);
}

TEST_F(TerminalConsoleTest, RemembersALostPositionForASecond) {
    say({0x01, 0x16, 0x00, 0x08, 0x00, 0x18, 0x08});
    console.look(19);
    say(lostPosition);
    runtime.runFor(1s);
    console.look(19);
    EXPECT_EQ(offsetOf(client.picture(), console.view()), 8);
    runtime.runFor(1ms);
    EXPECT_EQ(offsetOf(client.picture(), console.view()), std::nullopt);
}

TEST_F(TerminalConsoleTest, ShowsTheHelpUntilAnyKey) {
    EXPECT_EQ(sentFor('?', 'm'), Sent{});
    EXPECT_FALSE(console.view().help);
}

TEST_F(TerminalConsoleTest, SendsNothingButATakeOverWhileAnotherIsInControl) {
    say(busyAnswer);
    EXPECT_EQ(sentFor('m', SpecialKey::enter, SpecialKey::up, '[', 'g', '1', 'a', 't'), Sent{});
    EXPECT_EQ(sentFor('T'), (Sent{{0x01, 0x25}, {0x01, 0x00}}));
}

TEST_F(TerminalConsoleTest, ReleasesNothingOnceControlIsGone) {
    sentFor(SpecialKey::up);
    say(busyAnswer);
    EXPECT_FALSE(console.view().held[0]);
    runtime.runFor(600ms);
    EXPECT_EQ(receiver.taken(), Sent{});
}

TEST_F(TerminalConsoleTest, AsksForEverythingOnCtrlL) {
    EXPECT_EQ(sentFor(SpecialKey::redraw), (Sent{{0x01, 0x00}}));
}

TEST_F(TerminalConsoleTest, QuitsByKeyAndByInterruptEvenFromAPrompt) {
    sentFor('q');
    EXPECT_EQ(quits, 1);
    sentFor('g', 'q');
    EXPECT_EQ(quits, 1);
    sentFor(SpecialKey::interrupt);
    EXPECT_EQ(quits, 2);
}

class FakeTerminal final : public Terminal {
public:
    std::optional<Key> poll() override {
        if (keys.empty()) return std::nullopt;
        const Key first = keys.front();
        keys.erase(keys.begin());
        return first;
    }
    int rows() override { return height; }
    int columns() override { return 80; }
    void draw(const Canvas& canvas) override { pages.push_back(canvas); }
    void forget() override { ++forgotten; }

    std::vector<Key> keys;
    std::vector<Canvas> pages;
    int height = 24;
    int forgotten = 0;
};

class TerminalAppTest : public TerminalConsoleTest {
protected:
    FakeTerminal terminal;
    TerminalApp app{runtime, client, terminal, Bilingual(false), [this] { ++quits; }};
};

TEST_F(TerminalAppTest, DrawsOnlyWhenThePageLooksDifferent) {
    app.setReceiver("192.168.1.2:52700");
    runtime.runFor(3s);
    ASSERT_EQ(terminal.pages.size(), 1u);
    EXPECT_THAT(terminal.pages[0].line(0), ::testing::HasSubstr("192.168.1.2:52700"));
    say(halfway);
    runtime.runFor(100ms);
    EXPECT_EQ(terminal.pages.size(), 2u);
}

TEST_F(TerminalAppTest, DrawsAtMostThirtyTimesASecond) {
    for (std::uint8_t i = 0; i < 100; ++i) {
        receiver.send({0x01, 0x12, 0x00, 0x20, i});
        receiver.send({0x01, 0x12, 0x01, i, 0x00});
        runtime.runFor(10ms);
    }
    EXPECT_LE(terminal.pages.size(), 30u);
    EXPECT_GE(terminal.pages.size(), 15u);
}

TEST_F(TerminalAppTest, RedrawsWhenTheWindowChangesItsSize) {
    runtime.runFor(100ms);
    terminal.height = 40;
    runtime.runFor(100ms);
    ASSERT_EQ(terminal.pages.size(), 2u);
    EXPECT_EQ(terminal.pages[1].rows(), 40);
}

TEST_F(TerminalAppTest, BlinksBetweenTwoPages) {
    say({0x01, 0x13, 0x02, 0x00, 0x00});
    runtime.runFor(4s);
    EXPECT_GE(terminal.pages.size(), 9u);
    EXPECT_LE(terminal.pages.size(), 11u);
}

TEST_F(TerminalAppTest, TakesEveryKeyThatWaits) {
    terminal.keys = {key('m'), key('s'), key('q')};
    runtime.runFor(34ms);
    EXPECT_EQ(receiver.taken(), (Sent{{0x01, 0x04, 0}, {0x01, 0x05, 0}}));
    EXPECT_EQ(quits, 1);
}

TEST_F(TerminalAppTest, RedrawsEverythingOnCtrlL) {
    runtime.runFor(100ms);
    terminal.keys = {key(SpecialKey::redraw)};
    runtime.runFor(34ms);
    EXPECT_EQ(terminal.pages.size(), 2u);
    EXPECT_EQ(terminal.forgotten, 1);
}

} // namespace
} // namespace lumbrine::remote
