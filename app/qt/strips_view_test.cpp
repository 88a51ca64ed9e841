#include "app/qt/strips_view.h"
#include "app/qt/testing/offscreen.h"

#include <QHelpEvent>
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
    view.resize(800, 200);
    EXPECT_EQ(view.minimumSizeHint().height(), oneRow);
    EXPECT_LE(view.minimumSizeHint().width(), 400 - 32);
}

TEST_F(StripsViewTest, ReportsTheFocusToAScreenReader) {
    view.activateWindow();
    QFocusEvent focus(QEvent::FocusIn, Qt::TabFocusReason);
    QCoreApplication::sendEvent(&view, &focus);
    EXPECT_TRUE(view.accessibleDescription().startsWith("1 Trk0; 2 Trk1; "));
    EXPECT_NE(view.focusPolicy() & Qt::TabFocus, 0);
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
