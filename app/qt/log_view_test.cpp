#include "app/qt/colours.h"
#include "app/qt/log_view.h"
#include "app/qt/testing/offscreen.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QScrollBar>
#include <QTextBlock>

namespace lumbrine {
namespace {

class LogViewTest : public testing::Test {
protected:
    LogViewTest() {
        view.resize(300, 120);
        view.show();
        settleToolkit();
    }

    // The last 120 of the lines "line 1", "line 2", ... as the log keeps them.
    void logUpTo(int last) {
        std::vector<LogRow> rows;
        for (int i = std::max(1, last - 119); i <= last; ++i)
            rows.push_back({static_cast<std::uint64_t>(i), "", "✓ line " + std::to_string(i)});
        view.display(rows);
        settleToolkit();
    }

    std::string text() { return view.toPlainText().toStdString(); }

    // The line at the top of what can be seen.
    std::string topLine() { return view.cursorForPosition(QPoint(4, 4)).block().text().toStdString(); }

    LogView view{nullptr};
};

TEST_F(LogViewTest, ShowsTheLines) {
    view.display({{1, "", "✓ one"}, {2, "", "two"}});
    EXPECT_EQ(text(), "✓ one\ntwo");
    view.display({{1, "", "✓ one"}, {2, "", "two"}, {3, "", "→ three"}});
    EXPECT_EQ(text(), "✓ one\ntwo\n→ three");
    view.display({{2, "", "two"}, {3, "", "→ three"}, {4, "", "four"}});
    EXPECT_EQ(text(), "two\n→ three\nfour");
    view.display({{8, "", "other"}, {9, "", "lines"}});
    EXPECT_EQ(text(), "other\nlines");
    view.display({});
    EXPECT_EQ(text(), "");
    view.display({{10, "", "again"}});
    EXPECT_EQ(text(), "again");
}

TEST_F(LogViewTest, ShowsTheTimeBeforeALine) {
    view.display({{1, "14:03:59", "✓ one"}});
    EXPECT_EQ(text(), "14:03:59  ✓ one");
}

TEST_F(LogViewTest, ReplacesARowThatHasGrown) {
    view.display({{1, "", "♥ ping #1"}});
    view.display({{1, "", "♥ ping #1 … #10"}});
    EXPECT_EQ(text(), "♥ ping #1 … #10");
    view.display({{1, "", "♥ ping #1 … #10"}, {2, "", "♥ B #1"}, {3, "", "end"}});
    view.display({{1, "", "♥ ping #1 … #20"}, {2, "", "♥ B #1"}, {3, "", "end"}});
    EXPECT_EQ(text(), "♥ ping #1 … #20\n♥ B #1\nend");
    view.display({{1, "", "♥ ping #1 … #20"}, {2, "", "♥ B #1 … #2"}});
    EXPECT_EQ(text(), "♥ ping #1 … #20\n♥ B #1 … #2");
}

TEST_F(LogViewTest, KeepsNoMoreThanTheLogDoes) {
    for (int last = 1; last < 1000; last += 7)
        logUpTo(last);
    EXPECT_EQ(view.blockCount(), 120);
    EXPECT_EQ(view.document()->firstBlock().text(), "✓ line 876");
}

TEST_F(LogViewTest, ColoursTheMarkerAndNothingElse) {
    view.display({{1, "", "✗ failed"}, {2, "", "plain"}, {3, "", "[9-16] → moved"}});
    const Colours colours(view.palette());
    const auto formats = [&](int block) { return view.document()->findBlockByNumber(block).begin(); };
    EXPECT_EQ(formats(0).fragment().text(), "✗");
    EXPECT_EQ(formats(0).fragment().charFormat().foreground().color(), colours.bad);
    EXPECT_EQ((++formats(0)).fragment().text(), " failed");
    EXPECT_FALSE((++formats(0)).fragment().charFormat().hasProperty(QTextFormat::ForegroundBrush));
    EXPECT_EQ(formats(1).fragment().text(), "plain");
    EXPECT_EQ(formats(2).fragment().text(), "[9-16] ");
    EXPECT_FALSE(formats(2).fragment().charFormat().hasProperty(QTextFormat::ForegroundBrush));
    EXPECT_EQ((++formats(2)).fragment().text(), "→");
    EXPECT_EQ((++formats(2)).fragment().charFormat().foreground().color(), colours.accent);
}

TEST_F(LogViewTest, TakesItsColoursFromANewPalette) {
    view.display({{1, "", "✗ failed"}});
    view.setPalette(darkPalette());
    settleToolkit();
    EXPECT_EQ(text(), "✗ failed");
    EXPECT_EQ(view.document()->firstBlock().begin().fragment().charFormat().foreground().color(),
              Colours(darkPalette()).bad);
}

TEST_F(LogViewTest, FollowsTheNewestLine) {
    for (const int last : {1, 5, 50, 120, 121, 300}) {
        logUpTo(last);
        EXPECT_TRUE(view.isFollowing()) << last;
        const QTextCursor end(view.document()->lastBlock());
        EXPECT_TRUE(view.viewport()->rect().intersects(view.cursorRect(end))) << last;
    }
}

TEST_F(LogViewTest, StaysWhereTheUserHasScrolledTo) {
    logUpTo(100);
    view.verticalScrollBar()->setValue(40);
    const std::string reading = topLine();
    logUpTo(110);
    EXPECT_EQ(topLine(), reading);
    logUpTo(150); // 30 lines have gone at the top
    EXPECT_EQ(topLine(), reading);
    EXPECT_FALSE(view.isFollowing());
}

TEST_F(LogViewTest, FollowsAgainFromTheEndOn) {
    logUpTo(100);
    view.verticalScrollBar()->setValue(40);
    logUpTo(110);
    view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum());
    logUpTo(111);
    EXPECT_TRUE(view.isFollowing());
}

TEST_F(LogViewTest, FollowsWhileTheWindowChangesItsSize) {
    logUpTo(100);
    view.resize(200, 80);
    settleToolkit();
    EXPECT_TRUE(view.isFollowing());
}

TEST_F(LogViewTest, KeepsEachLineOfTheLogOnOneLine) {
    view.display({{1, "",
                   "a\nb\rc\td\xE2\x80\xA8"
                   "e"},
                  {2, "", "\xFF\xFE"}});
    EXPECT_EQ(view.blockCount(), 2);
    EXPECT_EQ(view.document()->firstBlock().text(), "a b c d e");
}

TEST_F(LogViewTest, CanBeSelectedAndCopiedButNotEdited) {
    view.display({{1, "", "✓ one"}, {2, "", "two"}});
    view.selectAll();
    view.copy();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "✓ one\ntwo");
    EXPECT_TRUE(view.isReadOnly());
    EXPECT_TRUE(view.textInteractionFlags().testFlag(Qt::TextSelectableByKeyboard));
}

TEST_F(LogViewTest, KeepsTheSelectionWhileLinesCome) {
    logUpTo(20);
    QTextCursor cursor(view.document()->findBlockByNumber(4));
    cursor.select(QTextCursor::LineUnderCursor);
    view.setTextCursor(cursor);
    logUpTo(30);
    EXPECT_EQ(view.textCursor().selectedText(), "✓ line 5");
}

} // namespace
} // namespace lumbrine
