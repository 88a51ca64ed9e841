#include "app/qt/status_rows.h"

#include "app/qt/colours.h"
#include "app/qt/symbols.h"
#include "app/qt/texts.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <utility>

namespace lumbrine {

namespace {

constexpr int lightWidth = 22;
constexpr double lightRadius = 4.5;
constexpr double cornerRadius = 8;
constexpr int noticeSymbolSize = 20;
constexpr int noticePadding = 10;

QString htmlOf(const std::vector<TextRun>& runs) {
    QString html;
    for (const TextRun& run : runs) {
        const QString escaped = shown(run.text).toHtmlEscaped();
        html += run.bold ? "<b>" + escaped + "</b>" : escaped;
    }
    return html;
}

void paintRounded(QWidget& widget, const QColor& fill, const QColor& edge) {
    QPainter painter(&widget);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(edge, 1));
    painter.setBrush(fill);
    painter.drawRoundedRect(QRectF(widget.rect()).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius, cornerRadius);
}

} // namespace

void Card::paintEvent(QPaintEvent*) {
    const Colours colours(palette());
    paintRounded(*this, colours.card, colours.line);
}

// ---- StatusRow

namespace {

// Screen readers speak a notification when it appears.
QAccessibleInterface* makeNotification(const QString& /*className*/, QObject* object) {
    auto* row = dynamic_cast<StatusRow*>(object);
    return row == nullptr ? nullptr : new QAccessibleWidget(row, QAccessible::Notification);
}

} // namespace

StatusRow::StatusRow(QWidget* parent) : QWidget(parent), title(new QLabel(this)), detail(new QLabel(this)) {
    QAccessible::installFactory(makeNotification); // once: Qt keeps no second one of the same function
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(lightWidth, 2, 0, 2);
    row->setSpacing(12);
    QFont bold = title->font();
    bold.setWeight(QFont::DemiBold);
    title->setFont(bold);
    title->setTextFormat(Qt::PlainText);
    detail->setTextFormat(Qt::PlainText);
    detail->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    detail->setWordWrap(true);
    row->addWidget(title);
    row->addWidget(detail, 1);
    tint();
}

void StatusRow::display(const StatusItem& item) {
    const QString name = shown(item.title + ": " + item.detail);
    const bool isTurn = std::exchange(lit, item.ok) != item.ok;
    if (isTurn) update();
    if (name == accessibleName()) return;
    title->setText(shown(item.title));
    detail->setText(shown(item.detail));
    setAccessibleName(name);
    if (!isTurn) return; // a screen reader announces who comes and goes, and not every ping
    QAccessibleEvent event(this, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&event);
}

void StatusRow::paintEvent(QPaintEvent*) {
    const Colours colours(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPointF centre(lightRadius + 2.5, height() / 2.0);
    if (lit) {
        QColor glow = colours.good;
        glow.setAlphaF(0.22F);
        painter.setPen(Qt::NoPen);
        painter.setBrush(glow);
        painter.drawEllipse(centre, lightRadius + 2.5, lightRadius + 2.5);
        painter.setBrush(colours.good);
    } else {
        painter.setPen(QPen(colours.secondary, 1.5));
    }
    painter.drawEllipse(centre, lightRadius, lightRadius);
}

void StatusRow::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) tint();
    QWidget::changeEvent(event);
}

void StatusRow::tint() {
    QPalette softer = palette();
    softer.setColor(QPalette::WindowText, Colours(palette()).secondary);
    detail->setPalette(softer);
}

// ---- NoticeBox

NoticeBox::NoticeBox(QWidget* parent) : QFrame(parent), paragraph(new QLabel(this)) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(noticeSymbolSize + 2 * noticePadding, noticePadding, noticePadding, noticePadding);
    paragraph->setWordWrap(true);
    paragraph->setTextFormat(Qt::RichText);
    row->addWidget(paragraph);
}

void NoticeBox::display(const ScreenNotice& notice) {
    symbol = notice.symbol;
    const QString html = htmlOf(notice.text);
    if (html != paragraph->text()) paragraph->setText(html);
    setVisible(notice.shown);
}

void NoticeBox::paintEvent(QPaintEvent*) {
    const Colours colours(palette());
    const QColor amber("#f5b301");
    paintRounded(*this, blend(colours.card, amber, colours.dark ? 0.1 : 0.14), blend(colours.card, amber, 0.45));
    QPainter painter(this);
    paintSymbol(painter, QRectF(noticePadding, noticePadding - 1, noticeSymbolSize, noticeSymbolSize), symbol,
                colours.warning);
}

} // namespace lumbrine
