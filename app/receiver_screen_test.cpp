// Every row, text, state and action of the window and the menu, in both languages.
#include "app/receiver_screen.h"
#include "model/testing/session_columns.h"

namespace lumbrine {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::SizeIs;

constexpr Bilingual english(false);
constexpr Bilingual japanese(true);

ReceiverView viewOf(const PublishedState& published, Bilingual text = english) {
    return receiverView(published, text, TimePoint());
}

std::string plain(const ScreenNotice& notice) {
    std::string whole;
    for (const TextRun& run : notice.text)
        whole += run.text;
    return whole;
}

std::vector<std::string> boldRuns(const ScreenNotice& notice) {
    std::vector<std::string> bold;
    for (const TextRun& run : notice.text)
        if (run.bold) bold.push_back(run.text);
    return bold;
}

PublishedState connected() {
    PublishedState published;
    published.huiConnected = true;
    published.pingCount = 12;
    published.iosConnected = true;
    published.iosClientDesc = "192.168.1.7 (+1 waiting)";
    published.localIP = "192.168.1.2";
    return published;
}

// ---- The window

TEST(ReceiverView, CarriesTheProgramsName) {
    for (const Bilingual text : {english, japanese}) {
        EXPECT_EQ(viewOf({}, text).windowTitle, "Lumbrine — Receiver");
        EXPECT_EQ(viewOf({}, text).heading, "Lumbrine — Receiver");
    }
}

TEST(ReceiverView, ShowsTheConnectionToProTools) {
    const StatusItem row = viewOf(connected()).proTools;
    EXPECT_TRUE(row.ok);
    EXPECT_EQ(row.title, "Pro Tools (HUI)");
    EXPECT_EQ(row.detail, "Connected · ping 12");
    EXPECT_EQ(viewOf(connected(), japanese).proTools.title, "Pro Tools (HUI)");
    EXPECT_EQ(viewOf(connected(), japanese).proTools.detail, "接続中 · ping 12");
}

TEST(ReceiverView, ClaimsNoConnectionThatIsNotThere) {
    PublishedState published;
    published.pingCount = 12;
    EXPECT_FALSE(viewOf(published).proTools.ok);
    EXPECT_EQ(viewOf(published).proTools.detail, "Waiting");
    EXPECT_EQ(viewOf(published, japanese).proTools.detail, "待機中");
}

TEST(ReceiverView, ShowsTheConnectedClient) {
    const StatusItem row = viewOf(connected()).client;
    EXPECT_TRUE(row.ok);
    EXPECT_EQ(row.title, "iPhone / iPad");
    EXPECT_EQ(row.detail, "192.168.1.7 (+1 waiting)");
    EXPECT_EQ(viewOf(connected(), japanese).client.title, "iPhone / iPad");
}

TEST(ReceiverView, KeepsTheDescriptionOfAClientThatHasGoneQuiet) {
    PublishedState published = connected();
    published.iosConnected = false;
    EXPECT_FALSE(viewOf(published).client.ok);
    EXPECT_EQ(viewOf(published).client.detail, "192.168.1.7 (+1 waiting)");
}

TEST(ReceiverView, WaitsForAClientWhereThereIsNone) {
    EXPECT_FALSE(viewOf({}).client.ok);
    EXPECT_EQ(viewOf({}).client.detail, "Waiting");
    EXPECT_EQ(viewOf({}, japanese).client.detail, "待機中");
}

TEST(ReceiverView, ExplainsHowToGetTheLinkBackWhileItIsDown) {
    const ScreenNotice notice = viewOf({}).notice;
    EXPECT_TRUE(notice.shown);
    EXPECT_EQ(symbolName(notice.symbol), "exclamationmark.triangle.fill");
    EXPECT_EQ(plain(notice), "Not connected to Pro Tools. The \"Reconnect to PT\" button can restore the connection "
                             "automatically (Accessibility permission required on first use). Manually, opening Setup "
                             "▸ Peripherals in PT and closing it with OK also restores it.");
    EXPECT_THAT(boldRuns(notice), ElementsAre("Setup ▸ Peripherals"));
    EXPECT_FALSE(viewOf(connected()).notice.shown);
}

TEST(ReceiverView, ExplainsItInJapanese) {
    const ScreenNotice notice = viewOf({}, japanese).notice;
    EXPECT_EQ(plain(notice), "Pro Tools と繋がっていません。「PT に再接続」ボタンで自動復旧できます（初回はアクセシビ"
                             "リティ許可が必要）。手動の場合は PT の 設定 ▸ ペリフェラル を開いて OK で閉じるだけでも"
                             "復帰します。");
    EXPECT_THAT(boldRuns(notice), ElementsAre("設定 ▸ ペリフェラル"));
}

TEST(ReceiverView, OffersToReconnect) {
    const ScreenButton button = viewOf({}).reconnect;
    EXPECT_EQ(symbolName(button.symbol), "arrow.triangle.2.circlepath");
    EXPECT_EQ(button.title, "Reconnect to PT");
    EXPECT_EQ(button.help, "Automatically opens and closes Pro Tools' Peripherals dialog so PT re-grabs the MIDI ports "
                           "(no settings are changed; Accessibility permission required on first use)");
    EXPECT_EQ(button.action, ScreenAction::reconnect);
    EXPECT_EQ(viewOf({}, japanese).reconnect.title, "PT に再接続");
    EXPECT_EQ(viewOf({}, japanese).reconnect.help,
              "PT のペリフェラル画面を自動で開閉し、MIDI ポートを掴み直させます（設定は変更しません。初回はアクセシビ"
              "リティ許可が必要）");
}

TEST(ReceiverView, ShowsTheAddress) {
    const AddressLine line = viewOf(connected()).address;
    EXPECT_EQ(symbolName(line.symbol), "wifi");
    EXPECT_EQ(line.title, "This Mac's address:");
    EXPECT_EQ(line.address, "192.168.1.2");
    EXPECT_EQ(viewOf({}, japanese).address.title, "この Mac の接続先:");
    EXPECT_EQ(viewOf({}).address.address, "127.0.0.1");
}

TEST(ReceiverView, OffersTheFourMovesInTheOrderOfTheirDirections) {
    std::vector<std::string> symbols, help, helpInJapanese;
    std::vector<ScreenAction> actions;
    for (const ScreenButton& button : viewOf({}).moves) {
        symbols.emplace_back(symbolName(button.symbol));
        help.push_back(button.help);
        actions.push_back(button.action);
        EXPECT_EQ(button.title, "");
    }
    for (const ScreenButton& button : viewOf({}, japanese).moves)
        helpInJapanese.push_back(button.help);
    EXPECT_THAT(symbols, ElementsAre("chevron.left.2", "chevron.left", "chevron.right", "chevron.right.2"));
    EXPECT_THAT(help, ElementsAre("Bank ← (back 8 channels)", "Channel ← (back 1 channel)",
                                  "Channel → (forward 1 channel)", "Bank → (forward 8 channels)"));
    EXPECT_THAT(helpInJapanese,
                ElementsAre("バンク ←（8ch 戻る）", "ch ←（1ch 戻る）", "ch →（1ch 進む）", "バンク →（8ch 進む）"));
    EXPECT_THAT(actions, ElementsAre(ScreenAction::bankBack, ScreenAction::channelBack, ScreenAction::channelForward,
                                     ScreenAction::bankForward));
}

TEST(ReceiverView, OffersTheTestSweep) {
    const ScreenButton button = viewOf({}).test;
    EXPECT_EQ(symbolName(button.symbol), "play.circle.fill");
    EXPECT_EQ(button.title, "Test: sweep track 1");
    EXPECT_EQ(button.action, ScreenAction::testSweep);
    EXPECT_EQ(viewOf({}, japanese).test.title, "テスト: トラック1をスイープ");
}

TEST(ReceiverView, HeadsTheLog) {
    EXPECT_EQ(viewOf({}).logHeading, "Activity");
    EXPECT_EQ(viewOf({}, japanese).logHeading, "アクティビティ");
}

// ---- The strips

PublishedState session() {
    PublishedState published;
    published.strips[1].name = "Snar";
    published.strips[1].fader = 0.756;
    published.strips[1].mute.rawOn = true;
    published.strips[1].select = true;
    published.session = Session::of({"Kick", "Snar", "Hat"});
    setColumn(published.session, &Track::name, {"Kick", "Snare Top", "Hat"});
    setColumn(published.session, &Track::color, {std::nullopt, 0x336699, std::nullopt});
    published.bankOffset = 0;
    return published;
}

TEST(ReceiverView, ShowsAsManyStripsAsAreMirrored) {
    PublishedState published;
    EXPECT_THAT(viewOf(published).strips, SizeIs(8));
    published.winW = 16;
    EXPECT_THAT(viewOf(published).strips, SizeIs(16));
}

TEST(ReceiverView, ShowsTheStripsAsTheSurfacesDo) {
    const StripView strip = viewOf(session()).strips[1];
    EXPECT_EQ(strip.name, "Snar");
    EXPECT_EQ(strip.fader, 0.756);
    EXPECT_TRUE(strip.mute);
    EXPECT_FALSE(strip.solo);
    EXPECT_TRUE(strip.select);
    EXPECT_EQ(viewOf({}).strips[1].name, "");
    EXPECT_EQ(viewOf({}).strips[1].fader, 0.0);
}

TEST(ReceiverView, TellsAMuteByTheHandFromOneByASolo) {
    PublishedState published = session();
    published.strips[1].mute.blinkUntil = TimePoint(1s);
    for (const bool isLit : {true, false}) {
        published.strips[1].mute.rawOn = isLit;
        const StripView strip = viewOf(published).strips[1];
        EXPECT_FALSE(strip.mute);
        EXPECT_TRUE(strip.impliedMute);
        EXPECT_EQ(strip.spokenValue, "76 %, muted by a solo, selected");
    }
    const StripView later = receiverView(published, english, TimePoint(2s)).strips[1];
    EXPECT_FALSE(later.mute || later.impliedMute);
}

TEST(ReceiverView, KnowsFullNamesAndColoursWhereTheSessionIsKnown) {
    PublishedState published = session();
    EXPECT_EQ(viewOf(published).strips[1].fullName, "Snare Top");
    EXPECT_EQ(viewOf(published).strips[1].color, 0x336699u);
    EXPECT_EQ(viewOf(published).strips[0].color, std::nullopt);
    published.bankOffset = 1;
    EXPECT_EQ(viewOf(published).strips[0].fullName, "Snare Top");
    EXPECT_EQ(viewOf(published).strips[1].fullName, "Hat");
    EXPECT_EQ(viewOf(published).strips[2].fullName, "");
    published.bankOffset = -1;
    EXPECT_THAT(viewOf(published).strips, Each(Field(&StripView::fullName, "")));
}

TEST(ReceiverView, BearsTracksOfWhichNothingButTheDisplayIsKnown) {
    PublishedState published = session();
    published.session = Session::of({"Kick", "Snar"});
    published.session.tracks[0].name = "Kick";
    EXPECT_EQ(viewOf(published).strips[0].fullName, "Kick");
    EXPECT_EQ(viewOf(published).strips[1].fullName, "");
    EXPECT_EQ(viewOf(published).strips[1].color, std::nullopt);
}

TEST(ReceiverView, KeepsFadersWithinTheirWay) {
    PublishedState published;
    published.strips[0].fader = 2.0;
    EXPECT_EQ(viewOf(published).strips[0].fader, 1.0);
}

TEST(ReceiverView, DescribesAStripInWords) {
    PublishedState published = session();
    EXPECT_EQ(viewOf(published).strips[1].spoken, "2 Snare Top, 76 %, muted, selected");
    EXPECT_EQ(viewOf(published, japanese).strips[1].spoken, "2 Snare Top、76 %、ミュート中、選択中");
    published.strips[1].solo = true;
    published.bankOffset = -1;
    EXPECT_EQ(viewOf(published).strips[1].spoken, "2 Snar, 76 %, muted, soloed, selected");
    EXPECT_EQ(viewOf({}).strips[0].spoken, "1, 0 %");
    EXPECT_EQ(viewOf({}).stripsName, "Channel strips");
    EXPECT_EQ(viewOf({}, japanese).stripsName, "チャンネルストリップ");
}

TEST(ReceiverView, SaysWhichTracksTheStripsShow) {
    PublishedState published;
    EXPECT_EQ(viewOf(published).position, "");
    published.session = Session::of(std::vector<std::string>(20, "Trk"));
    published.bankOffset = 4;
    EXPECT_EQ(viewOf(published).position, "Tracks 5-12 of 20");
    published.winW = 16;
    EXPECT_EQ(viewOf(published).position, "Tracks 5-20 of 20");
    EXPECT_EQ(viewOf(published, japanese).position, "トラック 5-20（全 20）");
}

// ---- The menu

std::vector<std::string> titles(const StatusMenu& menu) {
    std::vector<std::string> all;
    for (const MenuItem& item : menu.items)
        all.push_back(item.kind == MenuItem::Kind::divider ? "-" : item.title);
    return all;
}

const MenuItem& itemFor(const StatusMenu& menu, ScreenAction action) {
    return *std::ranges::find(menu.items, action, &MenuItem::action);
}

TEST(StatusMenu, ShowsTheStateAndOffersTheCommands) {
    EXPECT_THAT(titles(statusMenu(connected(), false, english)),
                ElementsAre("Pro Tools: Connected (ping 12)", "iPhone / iPad: 192.168.1.7 (+1 waiting)", "-",
                            "Show Window", "Reconnect to PT", "Launch at Login", "-", "Quit"));
    EXPECT_THAT(titles(statusMenu({}, false, english)),
                ElementsAre("Pro Tools: Waiting", "iPhone / iPad: Waiting", "-", "Show Window", "Reconnect to PT",
                            "Launch at Login", "-", "Quit"));
}

TEST(StatusMenu, ShowsTheStateInJapanese) {
    EXPECT_THAT(titles(statusMenu(connected(), false, japanese)),
                ElementsAre("Pro Tools: 接続中 (ping 12)", "iPhone / iPad: 192.168.1.7 (+1 waiting)", "-",
                            "ウィンドウを表示", "PT に再接続", "ログイン時に起動", "-", "終了"));
    EXPECT_THAT(titles(statusMenu({}, false, japanese)),
                ElementsAre("Pro Tools: 待機中", "iPhone / iPad: 待機中", "-", "ウィンドウを表示", "PT に再接続",
                            "ログイン時に起動", "-", "終了"));
}

TEST(StatusMenu, DoesNotNameAClientThatHasGoneQuiet) {
    PublishedState published = connected();
    published.iosConnected = false;
    EXPECT_EQ(statusMenu(published, false, english).items[1].title, "iPhone / iPad: Waiting");
}

TEST(StatusMenu, ReconnectsOnlyWhatIsNotConnected) {
    EXPECT_FALSE(itemFor(statusMenu(connected(), false, english), ScreenAction::reconnect).enabled);
    EXPECT_TRUE(itemFor(statusMenu({}, false, english), ScreenAction::reconnect).enabled);
}

TEST(StatusMenu, ShowsWhetherItIsLaunchedAtLogin) {
    const StatusMenu off = statusMenu({}, false, english);
    EXPECT_EQ(itemFor(off, ScreenAction::launchAtLogin).kind, MenuItem::Kind::toggle);
    EXPECT_FALSE(itemFor(off, ScreenAction::launchAtLogin).on);
    EXPECT_TRUE(itemFor(statusMenu({}, true, english), ScreenAction::launchAtLogin).on);
}

TEST(StatusMenu, HasStatusLinesThatDoNothing) {
    const StatusMenu menu = statusMenu({}, false, english);
    for (std::size_t i : {0u, 1u}) {
        EXPECT_EQ(menu.items[i].kind, MenuItem::Kind::status);
        EXPECT_EQ(menu.items[i].action, ScreenAction::none);
    }
    EXPECT_EQ(itemFor(menu, ScreenAction::showWindow).kind, MenuItem::Kind::command);
    EXPECT_EQ(itemFor(menu, ScreenAction::quit).kind, MenuItem::Kind::command);
}

TEST(StatusMenu, DimsItsSymbolWithoutTheLinkToProTools) {
    EXPECT_EQ(symbolName(statusMenu({}, false, english).symbol), "slider.vertical.3");
    EXPECT_EQ(statusMenu({}, false, english).opacity, 0.45);
    EXPECT_EQ(statusMenu(connected(), false, english).opacity, 1.0);
    EXPECT_EQ(statusMenu({}, false, english).spoken, "Lumbrine — Pro Tools: Waiting");
    EXPECT_EQ(statusMenu({}, false, japanese).spoken, "Lumbrine — Pro Tools: 待機中");
}

} // namespace
} // namespace lumbrine
