// A whole receiver under its window and icon, in virtual time.
#include "app/qt/about_box.h"
#include "app/qt/connect_box.h"
#include "app/qt/log_view.h"
#include "app/qt/receiver_shell.h"
#include "app/qt/set_up_box.h"
#include "app/qt/strips_view.h"
#include "app/qt/testing/offscreen.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QMessageBox>

namespace lumbrine {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class ReceiverShellTest : public testing::Test {
protected:
    ReceiverWindow& window() { return desk.shell.receiverWindow(); }

    QAction* item(const char* title) {
        for (QAction* action : desk.shell.statusIcon().menu().actions())
            if (action->text() == title) return action;
        return nullptr;
    }

    std::string detailOf(const char* title) {
        for (const auto* row : window().findChildren<QWidget*>())
            if (row->accessibleName().startsWith(title)) return row->accessibleName().toStdString();
        return {};
    }

    // A fader that never rests, as seen by the model.
    std::unique_ptr<RepeatingTimer> moveAFader() {
        return desk.world.runtime.repeatOnMain(2ms, [this] {
            PublishedState& published = desk.bench.state().published;
            published.strips[3].fader = published.strips[3].fader > 0.98 ? 0 : published.strips[3].fader + 0.01;
            published.changed();
        });
    }

    static std::vector<QMessageBox*> dialogs() {
        std::vector<QMessageBox*> found;
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (auto* box = qobject_cast<QMessageBox*>(widget); box != nullptr && box->isVisible())
                found.push_back(box);
        return found;
    }

    ShellBench desk;
};

TEST_F(ReceiverShellTest, StartsTheReceiverWithTheFirstSightOfTheWindow) {
    desk.run(1s);
    EXPECT_THAT(desk.bench.lines, IsEmpty());
    desk.open();
    EXPECT_THAT(desk.bench.takeLines(), SizeIs(3));
    EXPECT_THAT(window().logView().toPlainText().toStdString(), testing::HasSubstr("✓ UDP listening on :52700"));
}

TEST_F(ReceiverShellTest, StartsNothingAgainWhenTheWindowIsReopened) {
    desk.open();
    desk.bench.takeLines();
    desk.bench.mark();
    window().close();
    desk.run(1s);
    item("Show Window")->trigger();
    desk.run(1s);
    EXPECT_TRUE(window().isVisible());
    EXPECT_THAT(desk.bench.computer.published, SizeIs(1));
    EXPECT_THAT(desk.bench.surfaceA.presence.takeBytes(), IsEmpty());
    EXPECT_THAT(desk.bench.takeLines(), testing::Not(Contains(testing::HasSubstr("UDP"))));
}

TEST_F(ReceiverShellTest, GoesOnWithTheWindowClosed) {
    desk.open();
    window().close();
    desk.bench.surfaceA.ping();
    desk.run(1s);
    EXPECT_EQ(desk.bench.model->published().pingCount, 1);
    EXPECT_EQ(desk.quits, 0);
}

TEST_F(ReceiverShellTest, FollowsTheModelWithRowsMenuAndIcon) {
    desk.open();
    EXPECT_EQ(detailOf("Pro Tools"), "Pro Tools (HUI): Waiting");
    EXPECT_EQ(desk.shell.statusIcon().opacity(), 0.45);
    desk.bench.surfaceA.pingEverySecond();
    desk.run(2s);
    EXPECT_THAT(detailOf("Pro Tools"), testing::StartsWith("Pro Tools (HUI): Connected · ping "));
    EXPECT_EQ(desk.shell.statusIcon().opacity(), 1.0);
    EXPECT_FALSE(item("Reconnect to PT")->isEnabled());
    desk.bench.surfaceA.stopPinging();
    desk.run(10s);
    EXPECT_EQ(detailOf("Pro Tools"), "Pro Tools (HUI): Waiting");
    EXPECT_EQ(desk.shell.statusIcon().opacity(), 0.45);
    EXPECT_TRUE(item("Reconnect to PT")->isEnabled());
    const auto phone = desk.bench.phone("192.168.1.7");
    phone->send({0x01, 0x00});
    desk.run(1s);
    EXPECT_EQ(detailOf("iPhone"), "iPhone / iPad: 192.168.1.7");
}

TEST_F(ReceiverShellTest, DoesWhatTheButtonsSay) {
    desk.open();
    desk.bench.mark();
    buttonNamed(window(), "Channel → (forward 1 channel)")->click();
    desk.run(10ms);
    EXPECT_THAT(desk.bench.heardOn(desk.bench.surfaceA), ElementsAre("0ms B0 0F 0A", "0ms B0 2F 42"));
    desk.bench.takeLines();
    buttonNamed(window(), "Test: sweep track 1")->click();
    EXPECT_THAT(desk.bench.takeLines(), ElementsAre("▶ Test: sending track 1 sweep"));
}

TEST_F(ReceiverShellTest, ShowsOnlyWarningsAndFailuresOfTheLogIfAsked) {
    desk.open();
    desk.app.tell("✗ something failed");
    desk.app.tell("→ something happened");
    auto* filter = window().findChild<QCheckBox*>();
    EXPECT_EQ(filter->text(), "Warnings and failures only");
    filter->click();
    desk.run(100ms);
    const std::string shown = window().logView().toPlainText().toStdString();
    EXPECT_THAT(shown, testing::HasSubstr("✗ something failed"));
    EXPECT_THAT(shown, testing::Not(testing::HasSubstr("→ something happened")));
    filter->click();
    desk.run(100ms);
    EXPECT_THAT(window().logView().toPlainText().toStdString(), testing::HasSubstr("→ something happened"));
}

TEST_F(ReceiverShellTest, SwitchesLaunchingAtLogin) {
    item("Launch at Login")->trigger();
    EXPECT_TRUE(desk.service.enabled);
    EXPECT_TRUE(item("Launch at Login")->isChecked());
    item("Launch at Login")->trigger();
    EXPECT_FALSE(item("Launch at Login")->isChecked());
}

TEST_F(ReceiverShellTest, LetsTheToggleFallBackWhenThatFails) {
    desk.service.failure = "Read-only file system";
    item("Launch at Login")->trigger();
    EXPECT_FALSE(item("Launch at Login")->isChecked());
    EXPECT_THAT(desk.printed, ElementsAre("Failed to toggle login item: Read-only file system"));
    EXPECT_THAT(desk.bench.model->published().logLines, IsEmpty());
}

TEST_F(ReceiverShellTest, QuitsFromTheMenu) {
    item("Quit")->trigger();
    EXPECT_EQ(desk.quits, 1);
}

TEST(ReceiverShellInJapanese, KeepsItsLanguageWhateverBecomesOfTheEnvironment) {
    ShellBench desk(true);
    qputenv("LANGUAGE", "en");
    desk.open();
    desk.bench.surfaceA.ping();
    desk.run(1s);
    EXPECT_NE(buttonNamed(desk.shell.receiverWindow(), "PT に再接続"), nullptr);
    EXPECT_EQ(desk.shell.statusIcon().menu().actions().back()->text(), "終了");
    EXPECT_THAT(desk.bench.model->published().logLines.back(), testing::HasSubstr("ping"));
    qunsetenv("LANGUAGE");
}

void clickTheButtonThatSays(const QWidget& box, const QString& text) {
    for (auto* button : box.findChildren<QAbstractButton*>())
        if (button->text() == text) return button->click();
    ADD_FAILURE() << "no button says " << text.toStdString();
}

TEST_F(ReceiverShellTest, CopiesAReportWithVersionChecksAndLog) {
    desk.open();
    buttonNamed(window(), "About Lumbrine")->click();
    const auto boxes = childrenOf<AboutBox>(window());
    ASSERT_THAT(boxes, SizeIs(1));
    clickTheButtonThatSays(*boxes.front(), "Copy report");
    const std::string report = QGuiApplication::clipboard()->text().toStdString();
    EXPECT_THAT(report, testing::StartsWith("Lumbrine "));
    EXPECT_THAT(report, testing::HasSubstr("✓ Network port: UDP port 52700 is open.\n"));
    EXPECT_THAT(report, testing::HasSubstr("✓ UDP listening on :52700\n"));
}

TEST_F(ReceiverShellTest, SavesAReportToTheChosenFileAndSaysWhyItCannot) {
    std::string chosen;
    AboutBox box(
        aboutText({.version = {}, .systemName = {}, .checks = {}, .log = {}, .recorded = true}, Bilingual(false)),
        [&chosen](const std::string& file, const std::function<void(const ReceiverApp::Saved&)>& done) {
            chosen = file;
            done(std::unexpected(file + " has no room"));
        },
        nullptr);
    clickTheButtonThatSays(box, "Save report…");
    const auto dialogs = childrenOf<QFileDialog>(box);
    ASSERT_THAT(dialogs, SizeIs(1));
    Q_EMIT dialogs.front()->fileSelected("/tmp/evening.blackbox");
    EXPECT_EQ(chosen, "/tmp/evening.blackbox");
    const auto messages = childrenOf<QMessageBox>(box);
    ASSERT_THAT(messages, SizeIs(1));
    EXPECT_EQ(messages.front()->text(), "The report was not saved:\n/tmp/evening.blackbox has no room");
}

TEST_F(ReceiverShellTest, ShowsACodeForThePhoneAndTheAddressWithItsPort) {
    desk.open();
    desk.bench.computer.address = "192.168.1.99"; // since the start
    buttonNamed(window(), "Connect a phone: code and addresses")->click();
    const auto boxes = childrenOf<ConnectBox>(window());
    ASSERT_THAT(boxes, SizeIs(1));
    std::vector<std::string> texts;
    for (const auto* label : boxes.front()->findChildren<QLabel*>())
        texts.push_back(label->pixmap().isNull() ? label->text().toStdString() : label->accessibleName().toStdString());
    EXPECT_THAT(texts, testing::IsSupersetOf({"192.168.1.99:52700", "lumbrine://192.168.1.99:52700"}));
}

TEST_F(ReceiverShellTest, ShowsTheCodeOfThePageForBrowsersBesideThatOfTheApp) {
    const ConnectBox box(connectText({}, {}, "http://192.168.1.99:52780/#KEY", Bilingual(false)), {}, nullptr);
    std::vector<std::string> codes;
    for (const auto* label : box.findChildren<QLabel*>())
        if (!label->pixmap().isNull()) codes.push_back(label->accessibleName().toStdString());
    EXPECT_THAT(codes, testing::ElementsAre("lumbrine://127.0.0.1:0", "http://192.168.1.99:52780/#KEY"));
}

TEST_F(ReceiverShellTest, ShowsTheCardOfTheSetUpUntilEverythingWorks) {
    desk.open();
    const auto* box = childrenOf<SetUpBox>(window()).front();
    EXPECT_TRUE(box->isVisible());
    desk.bench.surfaceA.pingEverySecond();
    desk.run(2s);
    EXPECT_TRUE(box->isVisible());
    const auto phone = desk.bench.phone("192.168.1.7");
    phone->send({0x01, 0x00});
    desk.run(1s);
    EXPECT_FALSE(box->isVisible());
    desk.bench.surfaceA.stopPinging();
    desk.run(5s);
    EXPECT_FALSE(box->isVisible());
    desk.run(9s);
    EXPECT_TRUE(box->isVisible());
}

// ---- Drawing

TEST_F(ReceiverShellTest, DrawsAtMostThirtyTimesASecond) {
    desk.open();
    const auto timer = moveAFader();
    desk.run(1s);
    const int before = window().stripsView().paintCount();
    desk.run(4s);
    const int paints = window().stripsView().paintCount() - before;
    EXPECT_LE(paints, 4 * 30 + 1);
    EXPECT_GE(paints, 4 * 20);
}

TEST_F(ReceiverShellTest, DrawsNothingWhileNothingChanges) {
    desk.open();
    desk.run(1s);
    const int before = window().stripsView().paintCount();
    desk.run(10s);
    EXPECT_EQ(window().stripsView().paintCount(), before);
}

TEST_F(ReceiverShellTest, DrawsNothingWhileTheWindowIsHidden) {
    desk.open();
    const auto timer = moveAFader();
    window().close();
    desk.run(100ms);
    const int before = window().stripsView().paintCount();
    desk.run(2s);
    EXPECT_EQ(window().stripsView().paintCount(), before);
    window().setWindowState(Qt::WindowMinimized);
    desk.shell.openWindow();
    desk.run(200ms);
    EXPECT_GT(window().stripsView().paintCount(), before);
}

TEST_F(ReceiverShellTest, IsUpToDateAtTheFirstSightOfAWindowThatWasHidden) {
    desk.open();
    window().close();
    desk.app.tell("told behind the closed window");
    desk.run(1s);
    EXPECT_THAT(window().logView().toPlainText().toStdString(),
                testing::Not(testing::HasSubstr("told behind the closed window")));
    desk.shell.openWindow();
    EXPECT_THAT(window().logView().toPlainText().toStdString(), testing::HasSubstr("told behind the closed window"));
}

TEST_F(ReceiverShellTest, MayGoWithARefreshStillToCome) {
    desk.app.tell("one");
    desk.app.tell("two");
}

// ---- A desktop without a status area, as this one

TEST_F(ReceiverShellTest, SaysOnceThatItGoesOnAndHowToGetTheWindowBack) {
    ASSERT_FALSE(StatusIcon::isPossible());
    desk.open();
    desk.bench.takeLines();
    window().close();
    ASSERT_THAT(dialogs(), SizeIs(1));
    EXPECT_EQ(dialogs().front()->text(), "Lumbrine goes on");
    EXPECT_THAT(dialogs().front()->informativeText().toStdString(),
                testing::HasSubstr("Start Lumbrine again to see the window."));
    const std::vector<std::string> told{"⚠️ Window closed; Lumbrine goes on. This desktop has no status area: start "
                                        "Lumbrine again to see the window"};
    EXPECT_EQ(desk.bench.takeLines(), told);
    dialogs().front()->accept();
    desk.shell.openWindow();
    window().close();
    EXPECT_THAT(dialogs(), IsEmpty());
    EXPECT_THAT(desk.bench.takeLines(), IsEmpty());
    EXPECT_EQ(desk.quits, 0);
}

TEST_F(ReceiverShellTest, OffersTheEndWhereNoMenuIsAtHand) {
    desk.open();
    window().close();
    ASSERT_THAT(dialogs(), SizeIs(1));
    for (auto* button : dialogs().front()->buttons())
        if (button->text() == "Quit") button->click();
    EXPECT_EQ(desk.quits, 1);
}

TEST(ReceiverShellInJapanese, SaysThatItGoesOn) {
    ShellBench desk(true);
    desk.open();
    desk.shell.receiverWindow().close();
    EXPECT_THAT(desk.bench.model->published().logLines.back(),
                testing::HasSubstr("Lumbrine をもう一度起動してください"));
}

} // namespace
} // namespace lumbrine
