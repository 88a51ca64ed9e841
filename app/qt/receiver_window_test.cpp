// The window on a desktop without a screen: what it shows, how it is laid out, and the ways to it without a mouse.
#include "app/qt/colours.h"
#include "app/qt/log_view.h"
#include "app/qt/receiver_window.h"
#include "app/qt/set_up_box.h"
#include "app/qt/status_rows.h"
#include "app/qt/strips_view.h"
#include "app/qt/testing/offscreen.h"

#include <QApplication>
#include <cmath>

namespace lumbrine {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ReceiverWindowTest : public testing::Test {
protected:
    ReceiverWindowTest() {
        published.localIP = "192.168.100.200";
        published.iosClientDesc = "192.168.100.201 (+1 waiting)";
    }
    ~ReceiverWindowTest() override { QApplication::setPalette(lightPalette()); }

    void open(Bilingual text = Bilingual(false)) {
        window.display(receiverView(published, text, TimePoint()), card, rows);
        window.show();
        settleToolkit();
    }

    std::vector<std::string> labels() {
        std::vector<std::string> texts;
        for (const auto* label : window.findChildren<QLabel*>())
            if (label->isVisible() && !label->text().isEmpty()) texts.push_back(label->text().toStdString());
        return texts;
    }

    PublishedState published;
    SetUpCard card; // hidden
    std::vector<LogRow> rows;
    std::vector<ScreenAction> asked;
    int appeared = 0;
    int closed = 0;
    ReceiverWindow window{{.act = [this](ScreenAction action) { asked.push_back(action); },
                           .appeared = [this] { ++appeared; },
                           .closed = [this] { ++closed; }}};
};

TEST_F(ReceiverWindowTest, ShowsItsRows) {
    published.huiConnected = true;
    published.pingCount = 4;
    open();
    EXPECT_EQ(window.windowTitle(), "Lumbrine — Receiver");
    EXPECT_EQ(window.objectName(), "main");
    EXPECT_THAT(labels(), testing::UnorderedElementsAre("Lumbrine — Receiver", "Pro Tools (HUI)", "Connected · ping 4",
                                                        "iPhone / iPad", "192.168.100.201 (+1 waiting)",
                                                        "This Mac's address:", "192.168.100.200", "Activity"));
}

TEST_F(ReceiverWindowTest, ShowsTheNoticeWithItsBoldWordsWhileTheLinkIsDown) {
    open();
    const auto* notice = childrenOf<NoticeBox>(window).front();
    EXPECT_TRUE(notice->isVisible());
    EXPECT_THAT(notice->findChild<QLabel*>()->text().toStdString(), testing::HasSubstr("<b>Setup ▸ Peripherals</b>"));
    published.huiConnected = true;
    open();
    EXPECT_FALSE(notice->isVisible());
    published.huiConnected = false;
    open();
    EXPECT_TRUE(notice->isVisible());
}

TEST_F(ReceiverWindowTest, FollowsTheModel) {
    open();
    published.huiConnected = true;
    published.pingCount = 99;
    published.winW = 16;
    rows = {{1, "14:03:59", "✓ a line"}};
    open();
    EXPECT_THAT(labels(), testing::Contains("Connected · ping 99"));
    EXPECT_EQ(window.logView().toPlainText(), "14:03:59  ✓ a line");
}

TEST_F(ReceiverWindowTest, AsksForWhatItsButtonsSay) {
    open();
    const std::vector<std::pair<std::string, ScreenAction>> buttons{
        {"Reconnect to PT", ScreenAction::reconnect},
        {"Test: sweep track 1", ScreenAction::testSweep},
        {"Bank ← (back 8 channels)", ScreenAction::bankBack},
        {"Channel ← (back 1 channel)", ScreenAction::channelBack},
        {"Channel → (forward 1 channel)", ScreenAction::channelForward},
        {"Bank → (forward 8 channels)", ScreenAction::bankForward}};
    for (const auto& [name, action] : buttons) {
        QAbstractButton* button = buttonNamed(window, name);
        ASSERT_NE(button, nullptr) << name;
        asked.clear();
        button->click();
        EXPECT_THAT(asked, ElementsAre(action)) << name;
        EXPECT_FALSE(button->icon().isNull());
    }
    EXPECT_THAT(buttonNamed(window, "Reconnect to PT")->toolTip().toStdString(),
                testing::HasSubstr("opens and closes Pro Tools' Peripherals dialog"));
    EXPECT_EQ(buttonNamed(window, "Bank ← (back 8 channels)")->toolTip(),
              "<qt>Bank ← (back 8 channels) — Alt+PgUp</qt>");
    EXPECT_EQ(buttonNamed(window, "Test: sweep track 1")->toolTip(), "<qt>Test: sweep track 1 — Alt+T</qt>");
}

TEST_F(ReceiverWindowTest, IsDisplayedAgainWithoutAskingTwice) {
    open();
    open();
    buttonNamed(window, "Reconnect to PT")->click();
    EXPECT_THAT(asked, ElementsAre(ScreenAction::reconnect));
}

TEST_F(ReceiverWindowTest, LetsTheAddressBeSelected) {
    open();
    const auto labelsOfWindow = window.findChildren<QLabel*>();
    const auto address =
        std::ranges::find_if(labelsOfWindow, [](const QLabel* label) { return label->text() == "192.168.100.200"; });
    ASSERT_NE(address, labelsOfWindow.end());
    EXPECT_TRUE((*address)->textInteractionFlags().testFlag(Qt::TextSelectableByMouse));
    EXPECT_TRUE((*address)->textInteractionFlags().testFlag(Qt::TextSelectableByKeyboard));
}

TEST_F(ReceiverWindowTest, ShowsTheCardOfTheSetUpOnlyWhileThereIsOne) {
    open();
    const auto* box = childrenOf<SetUpBox>(window).front();
    EXPECT_FALSE(box->isVisible());
    published.health.midi.state = LinkHealth::State::up;
    card = setUpCard(published, HostSystem::linuxDesktop, Bilingual(false));
    open();
    EXPECT_TRUE(box->isVisible());
    for (const SetUpRow& row : card.rows)
        EXPECT_THAT(labels(), testing::Contains(row.text));
    EXPECT_THAT(labels(), testing::Contains(card.rows[1].advice));
    card = {};
    open();
    EXPECT_FALSE(box->isVisible());
}

// ---- Without a mouse, without sight

TEST_F(ReceiverWindowTest, HasKeysForWhatItsButtonsDo) {
    open();
    const std::vector<std::pair<QKeyCombination, ScreenAction>> keys{
        {Qt::ALT | Qt::Key_R, ScreenAction::reconnect},
        {Qt::ALT | Qt::Key_T, ScreenAction::testSweep},
        {Qt::ALT | Qt::Key_PageUp, ScreenAction::bankBack},
        {Qt::ALT | Qt::Key_Left, ScreenAction::channelBack},
        {Qt::ALT | Qt::Key_Right, ScreenAction::channelForward},
        {Qt::ALT | Qt::Key_PageDown, ScreenAction::bankForward},
        {Qt::ALT | Qt::Key_C, ScreenAction::connectPhone},
        {Qt::CTRL | Qt::Key_F, ScreenAction::session},
        {Qt::ALT | Qt::Key_W, ScreenAction::onlyProblems},
        {QKeyCombination(Qt::Key_F1), ScreenAction::about}};
    const auto buttons = window.findChildren<QAbstractButton*>();
    EXPECT_EQ(static_cast<std::size_t>(buttons.size()), keys.size());
    for (const auto& [key, action] : keys) {
        const auto button = std::ranges::find(buttons, QKeySequence(key), &QAbstractButton::shortcut);
        ASSERT_NE(button, buttons.end());
        asked.clear();
        (*button)->click();
        EXPECT_THAT(asked, ElementsAre(action));
    }
}

TEST_F(ReceiverWindowTest, HasATabOrderThroughAllThatCanBeUsed) {
    open();
    std::vector<std::string> order;
    const QWidget* start = &window;
    for (QWidget* next = window.nextInFocusChain(); next != start; next = next->nextInFocusChain())
        if (next->isVisible() && (next->focusPolicy() & Qt::TabFocus) != 0)
            order.push_back(next->accessibleName().toStdString());
    EXPECT_THAT(order,
                ElementsAre("All tracks of the session", "About Lumbrine", "Reconnect to PT", "Test: sweep track 1",
                            "Connect a phone: code and addresses", "This Mac's address: 192.168.100.200",
                            "Bank ← (back 8 channels)", "Channel ← (back 1 channel)", "Channel → (forward 1 channel)",
                            "Bank → (forward 8 channels)", "Channel strips", "Warnings and failures only", "Activity"));
}

TEST_F(ReceiverWindowTest, LetsEveryButtonHaveTheFocus) {
    open();
    for (auto* button : window.findChildren<QAbstractButton*>())
        EXPECT_TRUE(button->focusPolicy() & Qt::TabFocus) << button->accessibleName().toStdString();
}

TEST_F(ReceiverWindowTest, NamesItsRowsForAScreenReader) {
    open();
    std::vector<std::string> names;
    for (const auto* row : childrenOf<StatusRow>(window))
        names.push_back(row->accessibleName().toStdString());
    EXPECT_THAT(names, ElementsAre("Pro Tools (HUI): Waiting", "iPhone / iPad: 192.168.100.201 (+1 waiting)"));
    EXPECT_THAT(buttonNamed(window, "Reconnect to PT")->accessibleDescription().toStdString(),
                testing::HasSubstr("no settings are changed"));
}

// ---- Its size

TEST_F(ReceiverWindowTest, IsAtLeastAsLargeAsItMayBeAndCutsNothing) {
    for (const Bilingual text : {Bilingual(false), Bilingual(true)}) {
        for (const int strips : {8, 16}) {
            published.winW = strips;
            card = strips == 16 ? setUpCard(published, HostSystem::linuxDesktop, text) : SetUpCard{};
            open(text);
            EXPECT_GE(window.minimumWidth(), 400);
            EXPECT_GE(window.minimumHeight(), 400);
            window.resize(1, 1);
            settleToolkit();
            settleToolkit();
            EXPECT_LE(window.width(), 440);
            EXPECT_THAT(cutTexts(window), IsEmpty());
        }
    }
}

TEST_F(ReceiverWindowTest, CutsNothingInALargeFont) {
    QFont large = QApplication::font();
    large.setPointSizeF(large.pointSizeF() * 2);
    QApplication::setFont(large);
    {
        ReceiverWindow other({.act = [](ScreenAction) {}, .appeared = [] {}, .closed = [] {}});
        other.display(receiverView(published, Bilingual(false), TimePoint()), card, {});
        other.show();
        other.resize(1, 1);
        settleToolkit();
        settleToolkit();
        EXPECT_THAT(cutTexts(other), IsEmpty());
    }
    large.setPointSizeF(large.pointSizeF() / 2);
    QApplication::setFont(large);
}

// ---- Its colours

double luminance(const QColor& colour) {
    const auto part = [](double value) {
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(colour.redF()) + 0.7152 * part(colour.greenF()) + 0.0722 * part(colour.blueF());
}

double contrast(const QColor& a, const QColor& b) {
    const double brighter = std::max(luminance(a), luminance(b)) + 0.05;
    return brighter / (std::min(luminance(a), luminance(b)) + 0.05);
}

TEST_F(ReceiverWindowTest, CanBeReadOnALightAndOnADarkDesktop) {
    for (const QPalette& palette : {lightPalette(), darkPalette()}) {
        const Colours colours(palette);
        const std::vector<QColor> grounds{palette.color(QPalette::Window), palette.color(QPalette::Base), colours.card};
        for (const QColor& ground : grounds) {
            EXPECT_GE(contrast(colours.text, ground), 7);
            EXPECT_GE(contrast(colours.secondary, ground), 4.5) << ground.name().toStdString();
            for (const QColor& colour : {colours.good, colours.bad, colours.warning, colours.accent, colours.received})
                EXPECT_GE(contrast(colour, ground), 4.5) << colour.name().toStdString();
        }
    }
}

TEST_F(ReceiverWindowTest, FollowsThePaletteOfTheDesktop) {
    open();
    EXPECT_GT(window.grab().toImage().pixelColor(5, 5).lightness(), 200);
    QApplication::setPalette(darkPalette());
    settleToolkit();
    EXPECT_LT(window.grab().toImage().pixelColor(5, 5).lightness(), 60);
    for (const auto* label : window.findChildren<QLabel*>())
        EXPECT_GT(label->palette().color(QPalette::WindowText).lightness(), 120) << label->text().toStdString();
}

// ---- Coming and going

TEST_F(ReceiverWindowTest, SaysWhenItAppearsAndWhenTheUserClosesIt) {
    open();
    EXPECT_EQ(appeared, 1);
    window.close();
    EXPECT_EQ(closed, 1);
    EXPECT_FALSE(window.isOnScreen());
    open();
    EXPECT_EQ(appeared, 2);
    EXPECT_EQ(closed, 1);
}

TEST_F(ReceiverWindowTest, IsNotOnTheScreenWhileItIsMinimised) {
    open();
    EXPECT_TRUE(window.isOnScreen());
    window.setWindowState(Qt::WindowMinimized);
    settleToolkit();
    EXPECT_FALSE(window.isOnScreen());
    const int before = appeared;
    window.setWindowState(Qt::WindowNoState);
    settleToolkit();
    EXPECT_TRUE(window.isOnScreen());
    EXPECT_GT(appeared, before);
}

} // namespace
} // namespace lumbrine
