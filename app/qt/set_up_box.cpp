#include "app/qt/set_up_box.h"

#include "app/qt/colours.h"
#include "app/qt/texts.h"

#include <QEvent>
#include <QGridLayout>

namespace lumbrine {

namespace {

QLabel* wrappingLabel(QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

void colour(QLabel* label, const QColor& wanted) {
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, wanted);
    label->setPalette(palette);
}

} // namespace

SetUpBox::SetUpBox(QWidget* parent) : Card(parent), title(wrappingLabel(this)) {
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(12, 8, 12, 8);
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(4);
    grid->setColumnStretch(1, 1);
    QFont bold = title->font();
    bold.setWeight(QFont::DemiBold);
    title->setFont(bold);
    grid->addWidget(title, 0, 0, 1, 2);
    int line = 1;
    for (Row& row : rows) {
        row = {.mark = new QLabel(this), .text = wrappingLabel(this), .advice = wrappingLabel(this)};
        row.mark->setFont(bold);
        row.advice->setTextInteractionFlags(Qt::TextSelectableByMouse);
        grid->addWidget(row.mark, line, 0, Qt::AlignTop);
        grid->addWidget(row.text, line++, 1);
        grid->addWidget(row.advice, line++, 1);
    }
    hide();
}

void SetUpBox::display(const SetUpCard& card) {
    if (card == drawn) return;
    drawn = card;
    setVisible(card.shown);
    if (!card.shown) return;
    title->setText(shown(card.title));
    for (std::size_t i = 0; i < rows.size() && i < card.rows.size(); ++i) {
        rows[i].mark->setText(shown(markOf(card.rows[i].state)).trimmed());
        rows[i].text->setText(shown(card.rows[i].text));
        rows[i].text->setAccessibleName(shown(card.rows[i].spoken));
        rows[i].advice->setText(shown(card.rows[i].advice));
        rows[i].advice->setVisible(!card.rows[i].advice.empty());
    }
    tint();
}

void SetUpBox::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) tint();
    Card::changeEvent(event);
}

void SetUpBox::tint() {
    const Colours colours(palette());
    for (std::size_t i = 0; i < rows.size() && i < drawn.rows.size(); ++i) {
        colour(rows[i].mark, colours.of(drawn.rows[i].state));
        colour(rows[i].advice, colours.secondary);
    }
}

} // namespace lumbrine
