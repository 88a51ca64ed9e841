#include "app/qt/status_icon.h"
#include "app/qt/symbols.h"
#include "app/qt/testing/offscreen.h"

#include <QApplication>

namespace lumbrine {
namespace {

class StatusIconTest : public testing::Test {
protected:
    void display(bool connected, bool loginOn = false) {
        PublishedState published;
        published.huiConnected = connected;
        published.pingCount = 3;
        icon.display(statusMenu(published, loginOn, Bilingual(false)));
    }

    QAction* item(const char* title) {
        for (QAction* action : icon.menu().actions())
            if (action->text() == title) return action;
        return nullptr;
    }

    std::vector<ScreenAction> asked;
    StatusIcon icon{[this](ScreenAction action) { asked.push_back(action); }};
};

TEST_F(StatusIconTest, HasTheMenuWithItsDividers) {
    display(false);
    std::vector<std::string> titles;
    for (const QAction* action : icon.menu().actions())
        titles.push_back(action->isSeparator() ? "-" : action->text().toStdString());
    EXPECT_THAT(titles, testing::ElementsAre("Pro Tools: Waiting", "iPhone / iPad: Waiting", "-", "Show Window",
                                             "Reconnect to PT", "Launch at Login", "-", "Quit"));
}

TEST_F(StatusIconTest, FollowsTheModelWithTheSameItems) {
    display(false);
    const QAction* status = icon.menu().actions().front();
    display(true);
    EXPECT_EQ(icon.menu().actions().front(), status);
    EXPECT_EQ(status->text(), "Pro Tools: Connected (ping 3)");
}

TEST_F(StatusIconTest, OffersOnlyWhatCanBeDone) {
    display(false);
    EXPECT_TRUE(icon.menu().actions()[0]->isEnabled()) << "disabled lines are too pale to read";
    EXPECT_TRUE(icon.menu().actions()[1]->isEnabled());
    EXPECT_TRUE(item("Reconnect to PT")->isEnabled());
    display(true);
    EXPECT_FALSE(item("Reconnect to PT")->isEnabled());
}

TEST_F(StatusIconTest, AsksForWhatTheUserChooses) {
    display(false);
    for (const char* title : {"Show Window", "Reconnect to PT", "Launch at Login", "Quit"})
        item(title)->trigger();
    EXPECT_THAT(asked, testing::ElementsAre(ScreenAction::showWindow, ScreenAction::reconnect,
                                            ScreenAction::launchAtLogin, ScreenAction::quit));
}

TEST_F(StatusIconTest, ShowsTheRealStateOfTheToggleAndNotTheClick) {
    display(false, false);
    EXPECT_TRUE(item("Launch at Login")->isCheckable());
    item("Launch at Login")->trigger();
    display(false, false);
    EXPECT_FALSE(item("Launch at Login")->isChecked());
    display(false, true);
    EXPECT_TRUE(item("Launch at Login")->isChecked());
}

// How opaque the middle of a picture is, as the strongest of its pixels.
int opacityOf(const QIcon& icon) {
    int strongest = 0;
    const QImage image = icon.pixmap(22).toImage();
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            strongest = std::max(strongest, qAlpha(image.pixel(x, y)));
    return strongest;
}

TEST_F(StatusIconTest, IsDimWithoutTheLinkToProTools) {
    display(true);
    EXPECT_EQ(icon.opacity(), 1.0);
    EXPECT_EQ(opacityOf(programIcon(icon.opacity())), 255);
    display(false);
    EXPECT_EQ(icon.opacity(), 0.45);
    EXPECT_NEAR(opacityOf(programIcon(icon.opacity())), 0.45 * 255, 2);
}

TEST(Symbols, AreAllDrawnAndAllDifferent) {
    std::vector<QImage> pictures;
    for (const Symbol symbol : {Symbol::sliders, Symbol::warning, Symbol::reconnect, Symbol::network, Symbol::bankBack,
                                Symbol::channelBack, Symbol::channelForward, Symbol::bankForward, Symbol::play}) {
        const QImage picture = symbolIcon(symbol).pixmap(24).toImage();
        EXPECT_GT(opacityOf(symbolIcon(symbol)), 200);
        for (const QImage& other : pictures)
            EXPECT_NE(picture, other);
        pictures.push_back(picture);
    }
}

TEST(Symbols, TakeTheColourOfTheTextOnButtons) {
    const QImage onLight = symbolIcon(Symbol::play).pixmap(24).toImage();
    QApplication::setPalette(darkPalette());
    const QImage onDark = symbolIcon(Symbol::play).pixmap(24).toImage();
    QApplication::setPalette(lightPalette());
    const QPoint inTheDisc(4, 12);
    EXPECT_LT(onLight.pixelColor(inTheDisc).lightness(), 80);
    EXPECT_GT(onDark.pixelColor(inTheDisc).lightness(), 180);
}

} // namespace
} // namespace lumbrine
