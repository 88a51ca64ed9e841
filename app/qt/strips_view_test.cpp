#include "app/qt/strips_view.h"
#include "app/qt/testing/offscreen.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QToolTip>

namespace lumbrine {
namespace {

std::vector<StripView> someStrips(std::size_t count) {
    std::vector<StripView> strips(count);
    for (std::size_t i = 0; i < count; ++i) {
        strips[i].name = "Trk" + std::to_string(i % 10);
        strips[i].fader = static_cast<double>(i) / static_cast<double>(count);
        strips[i].spoken = std::to_string(i + 1) + " " + strips[i].name;
    }
    return strips;
}

class StripsViewTest : public testing::Test {
protected:
    StripsViewTest() {
        view.resize(480, 200);
        view.display(strips, true);
        view.show();
        settleToolkit();
    }

    QImage picture() { return view.grab().toImage(); }

    // Which of the strips' places differ between two pictures.
    std::vector<int> differing(const QImage& before, const QImage& after, int columns) {
        std::vector<int> found;
        for (int i = 0; i < columns; ++i) {
            const QRect place(before.width() * i / columns + 3, 0, before.width() / columns - 6, before.height());
            if (before.copy(place) != after.copy(place)) found.push_back(i);
        }
        return found;
    }

    std::vector<StripView> strips = someStrips(8);
    StripsView view{nullptr};
};

TEST_F(StripsViewTest, ShowsEachThingThatAStripHas) {
    const std::vector<std::function<void(StripView&)>> changes{[](StripView& strip) { strip.fader = 0.9; },
                                                               [](StripView& strip) { strip.name = "Vox"; },
                                                               [](StripView& strip) { strip.fullName = "Lead vocal"; },
                                                               [](StripView& strip) { strip.mute = true; },
                                                               [](StripView& strip) { strip.solo = true; },
                                                               [](StripView& strip) { strip.select = true; },
                                                               [](StripView& strip) { strip.color = 0xCC3366; }};
    for (const auto& change : changes) {
        const QImage before = picture();
        change(strips[2]);
        view.display(strips, true);
        EXPECT_EQ(differing(before, picture(), 8), std::vector<int>{2});
    }
}

TEST_F(StripsViewTest, StandsBackWhileProToolsIsNotThere) {
    const QImage before = picture();
    view.display(strips, false);
    EXPECT_EQ(differing(before, picture(), 8).size(), 8u);
}

TEST_F(StripsViewTest, PaintsOnlyWhatHasChanged) {
    const int before = view.paintCount();
    view.display(strips, true);
    settleToolkit();
    EXPECT_EQ(view.paintCount(), before);
    strips[1].fader = 0.5;
    view.display(strips, true);
    strips[6].fader = 0.5;
    view.display(strips, true);
    settleToolkit();
    EXPECT_EQ(view.paintCount(), before + 1);
}

TEST_F(StripsViewTest, PutsTwoSurfacesOneAboveTheOtherWhereItIsNarrow) {
    const int oneRow = view.minimumSizeHint().height();
    view.display(someStrips(16), true);
    EXPECT_GT(view.minimumSizeHint().height(), 2 * oneRow - 1);
    view.resize(1000, 200);
    EXPECT_GT(view.minimumSizeHint().height(), 2 * oneRow - 1) << "names would be cut";
    view.resize(1200, 200);
    EXPECT_EQ(view.minimumSizeHint().height(), oneRow);
    EXPECT_LE(view.minimumSizeHint().width(), 400 - 32);
}

TEST_F(StripsViewTest, IsOneElementForEachStripToAScreenReader) {
    strips[2].spokenName = "3 Lead";
    strips[2].spokenValue = "72 %, muted";
    strips[2].spokenLights = "muted";
    strips[2].fader = 0.7183;
    strips[2].select = true;
    view.display(strips, true);
    QAccessibleInterface* const all = QAccessible::queryAccessibleInterface(&view);
    ASSERT_EQ(all->childCount(), 8);
    QAccessibleInterface* const third = all->child(2);
    EXPECT_EQ(third->role(), QAccessible::Slider);
    EXPECT_EQ(third->text(QAccessible::Name), "3 Lead");
    EXPECT_EQ(third->text(QAccessible::Value), "72 %, muted");
    EXPECT_EQ(third->text(QAccessible::Description), "muted");
    EXPECT_EQ(third->valueInterface()->currentValue(), 72);
    third->valueInterface()->setCurrentValue(10);
    EXPECT_EQ(third->valueInterface()->currentValue(), 72);
    EXPECT_TRUE(third->state().selected);
    EXPECT_EQ(third->parent(), all);
    EXPECT_EQ(all->indexOfChild(third), 2);
    const QPoint middle = third->rect().center();
    EXPECT_EQ(all->childAt(middle.x(), middle.y()), third);
    view.display({}, true);
    EXPECT_EQ(all->childCount(), 0);
    EXPECT_FALSE(third->isValid());
}

TEST_F(StripsViewTest, GoesFromStripToStripByArrowKeys) {
    const auto press = [this](int key) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QCoreApplication::sendEvent(&view, &event);
        return view.current();
    };
    view.display(someStrips(16), true);
    EXPECT_EQ(press(Qt::Key_Left), 0);
    EXPECT_EQ(press(Qt::Key_Right), 1);
    EXPECT_EQ(press(Qt::Key_Down), 9);
    EXPECT_EQ(press(Qt::Key_Down), 9);
    EXPECT_EQ(press(Qt::Key_End), 15);
    EXPECT_EQ(press(Qt::Key_Right), 15);
    EXPECT_EQ(press(Qt::Key_Up), 7);
    EXPECT_EQ(press(Qt::Key_Home), 0);
    press(Qt::Key_End);
    view.display(someStrips(8), true);
    EXPECT_EQ(view.current(), 7) << "the second surface has gone";
}

TEST_F(StripsViewTest, ShowsTheStripUnderThePointerAsPlainText) {
    strips[2].spoken = "3 <b>Lead</b> & Vox, 50 %";
    view.display(strips, true);
    const QPoint point(view.width() * 2 / 8 + 10, 20);
    QHelpEvent help(QEvent::ToolTip, point, view.mapToGlobal(point));
    QCoreApplication::sendEvent(&view, &help);
    EXPECT_EQ(QToolTip::text(), "<qt>3 &lt;b&gt;Lead&lt;/b&gt; &amp; Vox, 50 %</qt>");
    QToolTip::hideText();
}

} // namespace
} // namespace lumbrine
