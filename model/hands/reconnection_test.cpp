// The user's reconnect action, in front of a small Pro Tools on the screen.
#include "model/testing/model_test.h"
#include "platform/virtual/memory_screen.h"

namespace lumbrine {
namespace {

constexpr const char* opening = "→ Opening and closing PT's Peripherals dialog so it re-grabs the ports…";
constexpr const char* done = "✓ Opened and closed the Peripherals dialog (PT will re-grab the MIDI ports)";
constexpr const char* byHand =
    "✗ Still not connected. In PT's Setup ▸ Peripherals ▸ MIDI Controllers, "
    "set Type = HUI / Receive From = Lumbrine / Send To = Lumbrine and close the dialog with OK";

class ReconnectionTest : public ::testing::Test {
protected:
    using Element = MemoryScreen::Element;

    explicit ReconnectionTest(bool japanese = false) : bench(world, {.japanese = japanese}) {
        bench.start();
        bench.setTrackMap({"Kick"}, 0); // nothing to scan for
    }
    void TearDown() override { EXPECT_EQ(bench.screen.liveHandles(), 0); }

    // With a menu item that opens the dialog at once, a tab in it, and an OK that closes it.
    void startProTools() {
        app = bench.screen.launch("com.avid.ProTools", 77);
        const Element item = bench.screen.add({{"AXTitle", "Peripherals..."}});
        const Element menu = bench.screen.add({{"AXChildren", std::vector{item}}});
        const Element setup = bench.screen.add({{"AXChildren", std::vector{menu}}});
        const Element bar = bench.screen.add({{"AXChildren", std::vector{bench.screen.add({}), setup}}});
        bench.screen.set(app, "AXMenuBar", bar);
        bench.screen.set(app, "AXWindows", std::vector<Element>{});
        bench.screen.watchActions([this, item](Element pressed, std::string_view) {
            ++presses;
            if (pressed == item) openDialog();
            if (pressed == ok) closeDialog();
            return true;
        });
    }

    void openDialog() {
        ok = bench.screen.add({{"AXRole", "AXButton"}, {"AXTitle", "OK"}});
        const Element tab = bench.screen.add({{"AXRole", "AXRadioButton"}, {"AXTitle", "MIDI Controllers"}});
        dialog = bench.screen.add({{"AXTitle", "Peripherals"}, {"AXChildren", std::vector{tab, ok}}});
        bench.screen.append(app, "AXWindows", dialog);
    }

    void closeDialog() {
        bench.screen.remove(dialog);
        bench.screen.set(app, "AXWindows", std::vector<Element>{});
        if (whenClosed) whenClosed();
    }

    void press() { bench.model->reconnectToPT(); }

    // What the log tells meanwhile, but for the pings and the pans of a new connection.
    Lines linesOf(Duration duration) {
        bench.run(duration);
        Lines lines = bench.takeLines();
        std::erase_if(lines,
                      [](const std::string& line) { return line.starts_with("♥") || line.starts_with("→ pan mode"); });
        return lines;
    }

    ModelWorld world;
    ModelBench bench;
    Element app;
    Element dialog;
    Element ok;
    std::function<void()> whenClosed;
    int presses = 0;
};

class JapaneseReconnectionTest : public ReconnectionTest {
protected:
    JapaneseReconnectionTest() : ReconnectionTest(true) {}
};

TEST_F(ReconnectionTest, TellsOfTheBeginningAtOnceAndOfTheOutcomeWhenItIsThere) {
    startProTools();
    press();
    EXPECT_THAT(bench.takeLines(), ElementsAre(opening));
    EXPECT_THAT(linesOf(599ms), IsEmpty());
    EXPECT_THAT(linesOf(1ms), ElementsAre(done));
    EXPECT_EQ(presses, 3); // menu item, tab, OK
}

TEST_F(ReconnectionTest, HasSurfaceAAnnounceItselfThreeTimes) {
    startProTools();
    press();
    bench.run(1s);
    EXPECT_THAT(bench.surfaceA.presence.take(bench.origin), ElementsAre("0ms FF", "120ms FF", "240ms FF"));
    EXPECT_THAT(bench.surfaceB.presence.take(bench.origin), IsEmpty());
}

TEST_F(ReconnectionTest, TellsWhatToSetByHandWhenNoPingComesWithinFiveSeconds) {
    startProTools();
    press();
    EXPECT_THAT(linesOf(600ms + 4999ms), ElementsAre(opening, done));
    EXPECT_THAT(linesOf(1ms), ElementsAre(byHand));
    EXPECT_THAT(linesOf(1min), IsEmpty());
}

TEST_F(JapaneseReconnectionTest, TellsAllOfItInJapanese) {
    startProTools();
    press();
    EXPECT_THAT(linesOf(10s),
                ElementsAre("→ PT のペリフェラル画面を開閉して、ポートを掴み直させます…",
                            "✓ ペリフェラル画面を開閉しました（PT が MIDI ポートを掴み直します）",
                            "✗ まだ繋がりません。PT の 設定▸ペリフェラル▸MIDIコントローラー で "
                            "Type = HUI / Receive From = Lumbrine / Send To = Lumbrine に設定し、OK で閉じてください"));
}

TEST_F(ReconnectionTest, SaysNothingMoreWhenProToolsIsBack) {
    startProTools();
    whenClosed = [this] { world.runtime.postMain([this] { bench.surfaceA.pingEverySecond(); }); };
    press();
    EXPECT_THAT(linesOf(1min), ElementsAre(opening, done));
    EXPECT_TRUE(bench.model->published().huiConnected);
}

TEST_F(ReconnectionTest, WaitsForAPingThatTakesItsTime) {
    startProTools();
    whenClosed = [this] { world.runtime.postMainAfter(4500ms, [this] { bench.surfaceA.pingEverySecond(); }); };
    press();
    EXPECT_THAT(linesOf(1min), ElementsAre(opening, done));
}

TEST_F(ReconnectionTest, IsNotBegunAgainBeforeItHasEnded) {
    startProTools();
    press();
    for (const Duration later : {Duration(300ms), Duration(300ms), Duration(4900ms)}) {
        bench.run(later);
        press();
    }
    EXPECT_THAT(linesOf(1s), ElementsAre(opening, done, byHand));
    EXPECT_EQ(presses, 3);
    EXPECT_THAT(bench.surfaceA.presence.take(bench.origin), testing::SizeIs(3));

    press();
    EXPECT_THAT(linesOf(1s), ElementsAre(opening, done));
}

TEST_F(ReconnectionTest, MayBeAskedForAgainAsSoonAsProToolsIsBack) {
    startProTools();
    whenClosed = [this] { world.runtime.postMain([this] { bench.surfaceA.pingEverySecond(); }); };
    press();
    bench.run(1200ms);
    bench.lines.clear();
    press();
    EXPECT_THAT(bench.takeLines(), ElementsAre("Already connected to Pro Tools"));
}

TEST_F(ReconnectionTest, TellsWhenProToolsDoesNotRunAndWhatToDoByHand) {
    press();
    EXPECT_THAT(linesOf(4999ms), ElementsAre(opening, "✗ Pro Tools is not running"));
    EXPECT_THAT(linesOf(1ms), ElementsAre(byHand));
}

TEST_F(ReconnectionTest, TellsWhenTheDialogDoesNotOpen) {
    startProTools();
    bench.screen.watchActions([](Element, std::string_view) { return true; });
    press();
    EXPECT_THAT(linesOf(4999ms), ElementsAre(opening));
    EXPECT_THAT(linesOf(1ms), ElementsAre("✗ The Peripherals dialog did not open"));
    EXPECT_THAT(linesOf(5s), ElementsAre(byHand));
}

TEST_F(ReconnectionTest, LeavesTheScreenAloneWhileConnected) {
    startProTools();
    bench.surfaceA.pingEverySecond();
    bench.run(1s);
    bench.lines.clear();
    bench.mark();
    press();
    EXPECT_THAT(linesOf(10s), ElementsAre("Already connected to Pro Tools"));
    EXPECT_EQ(bench.screen.calls(), 0U);
    EXPECT_THAT(bench.surfaceA.presence.take(bench.origin), testing::Each(testing::Not(testing::EndsWith("FF"))));
}

TEST_F(JapaneseReconnectionTest, SaysInJapaneseThatItIsConnected) {
    bench.surfaceA.pingEverySecond();
    bench.run(1s);
    bench.lines.clear();
    press();
    EXPECT_THAT(bench.takeLines(), ElementsAre("既に Pro Tools と接続中です"));
}

TEST_F(ReconnectionTest, AsksForPermissionWhenItIsMissing) {
    startProTools();
    bench.screen.setTrusted(false);
    press();
    EXPECT_THAT(
        linesOf(10s),
        ElementsAre(
            "⚠️ This feature requires Accessibility permission",
            "   (it opens and closes PT's Peripherals dialog for you so PT re-grabs the MIDI ports)",
            "   Allow it in System Settings ▸ Privacy & Security ▸ Accessibility, then press the button again"));
    EXPECT_EQ(bench.screen.prompts(), 1);
    EXPECT_EQ(bench.screen.reads(), 0U);
    EXPECT_THAT(bench.surfaceA.presence.takeBytes(), IsEmpty());

    press();
    EXPECT_EQ(bench.screen.prompts(), 2);
    EXPECT_EQ(bench.takeLines().back(),
              "   If Lumbrine is switched on there already: remove it with “−” and add it again");
    bench.screen.setTrusted(true);
    press();
    EXPECT_THAT(linesOf(1s), ElementsAre(opening, done));
}

TEST_F(JapaneseReconnectionTest, AsksForPermissionInJapanese) {
    bench.screen.setTrusted(false);
    press();
    EXPECT_THAT(
        linesOf(10s),
        ElementsAre("⚠️ この機能には「アクセシビリティ」権限が必要です",
                    "   （PT のペリフェラル画面を代わりに開閉して、MIDI ポートを掴み直させるため）",
                    "   システム設定 ▸ プライバシーとセキュリティ ▸ アクセシビリティ で許可 → もう一度押してください"));
}

TEST_F(ReconnectionTest, FindsNothingOnceThePermissionIsWithdrawn) {
    startProTools();
    bench.screen.watchReads([this](const MemoryScreen::Read&) {
        bench.screen.setTrusted(false);
        return false;
    });
    press();
    EXPECT_THAT(linesOf(1s), ElementsAre(opening, "✗ \"Peripherals\" menu item not found (unexpected PT menu layout)"));
    EXPECT_EQ(presses, 0);
}

TEST_F(ReconnectionTest, SaysWhatToDoWhenTheSystemRefusesWhatItSaysIsAllowed) {
    startProTools();
    bench.screen.setRefusing(true);
    press();
    EXPECT_THAT(linesOf(1s), ElementsAre(opening, "✗ macOS does not let Lumbrine read Pro Tools' windows",
                                         testing::StartsWith(
                                             "⚠️ The system does not let Lumbrine read Pro Tools' windows although")));
    EXPECT_EQ(bench.screen.reads(), 1U);
}

TEST_F(ReconnectionTest, NeverReadsTheScreenOnTheMainThread) {
    startProTools();
    int readsOnMain = 0;
    bench.screen.watchReads([&](const MemoryScreen::Read&) {
        readsOnMain += world.runtime.onMain() ? 1 : 0;
        return true;
    });
    press();
    bench.run(1s);
    EXPECT_GT(bench.screen.reads(), 0U);
    EXPECT_EQ(readsOnMain, 0);
}

TEST_F(ReconnectionTest, OfAModelThatGoesAwayEndsByItself) {
    startProTools();
    press();
    bench.run(300ms);
    const auto gone = bench.model->lifetime();
    bench.model.reset();
    EXPECT_TRUE(world.runtime.runUntil([&gone] { return gone.expired(); }, 10s));
}

} // namespace
} // namespace lumbrine
