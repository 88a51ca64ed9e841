#include "app/qt/log_view.h"

#include "app/log_lines.h"
#include "app/qt/colours.h"
#include "app/qt/texts.h"

#include <QEvent>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <utility>

namespace lumbrine {

namespace {

constexpr int fewestLines = 3;
constexpr int usualLines = 8;

// Replaces line breaks and control characters, which a track name may contain, so that a log line stays one line.
QString oneLine(const std::string& line) {
    QString text = shown(line);
    for (QChar& character : text)
        if (character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
            character == QChar::ParagraphSeparator)
            character = QLatin1Char(' ');
    return text;
}

} // namespace

LogView::LogView(QWidget* parent) : QPlainTextEdit(parent) {
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setTabChangesFocus(true);
    setFrameShape(QFrame::StyledPanel);
    document()->setDocumentMargin(6);
}

void LogView::display(const std::vector<LogRow>& log) {
    if (log == rows) return;
    const RowChange change = changeBetween(rows, log);
    const bool following = isFollowing();
    dropFirst(change.gone);
    dropFrom(change.kept);
    for (std::size_t i = change.kept; i < log.size(); ++i)
        add(log[i]);
    if (following) follow();
}

bool LogView::isFollowing() const {
    return verticalScrollBar()->value() >= verticalScrollBar()->maximum();
}

void LogView::follow() {
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

// The scroll bar counts screen rows, and a wrapped line takes several. Moving the bar by the removed ones keeps the
// visible lines in place.
void LogView::dropFirst(std::size_t count) {
    if (count == 0) return;
    int removed = 0;
    QTextCursor cursor(document());
    for (std::size_t i = 0; i < count; ++i) {
        removed += cursor.block().lineCount();
        cursor.movePosition(QTextCursor::NextBlock, QTextCursor::KeepAnchor);
    }
    if (count >= rows.size()) cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
    const int before = verticalScrollBar()->value();
    cursor.removeSelectedText();
    verticalScrollBar()->setValue(before - removed);
    rows.erase(rows.begin(), rows.begin() + static_cast<std::ptrdiff_t>(count));
}

void LogView::dropFrom(std::size_t first) {
    if (first >= rows.size()) return;
    QTextCursor cursor(document());
    if (first > 0) {
        cursor.setPosition(document()->findBlockByNumber(static_cast<int>(first) - 1).position());
        cursor.movePosition(QTextCursor::EndOfBlock);
    }
    cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
    rows.resize(first);
}

void LogView::add(const LogRow& row) {
    const std::string& line = row.line;
    const MarkedLine marked = markerOf(line);
    QTextCursor cursor(document());
    cursor.movePosition(QTextCursor::End);
    if (!rows.empty()) cursor.insertBlock();
    const Colours colours(palette());
    const QTextCharFormat plain;
    if (!row.time.empty()) {
        QTextCharFormat soft;
        soft.setForeground(colours.secondary);
        cursor.insertText(shown(row.time) + QStringLiteral("  "), soft);
    }
    if (marked.length > 0) {
        QTextCharFormat coloured;
        coloured.setForeground(colours.of(marked.marker));
        coloured.setFontWeight(QFont::Bold);
        cursor.insertText(oneLine(line.substr(0, marked.begin)), plain);
        cursor.insertText(oneLine(line.substr(marked.begin, marked.length)), coloured);
    }
    cursor.insertText(oneLine(line.substr(marked.begin + marked.length)), plain);
    rows.push_back(row);
}

void LogView::changeEvent(QEvent* event) {
    QPlainTextEdit::changeEvent(event);
    if (event->type() != QEvent::PaletteChange) return; // otherwise: the colours of all lines have changed
    const std::vector<LogRow> log = std::exchange(rows, {});
    clear();
    display(log);
}

void LogView::resizeEvent(QResizeEvent* event) {
    const bool following = isFollowing();
    QPlainTextEdit::resizeEvent(event);
    if (following) follow();
}

QSize LogView::minimumSizeHint() const {
    return {120, fontMetrics().lineSpacing() * fewestLines + 16};
}

QSize LogView::sizeHint() const {
    return {360, fontMetrics().lineSpacing() * usualLines + 16};
}

} // namespace lumbrine
