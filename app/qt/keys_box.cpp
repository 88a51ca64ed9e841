#include "app/qt/keys_box.h"

#include "app/qt/qr_picture.h"
#include "app/qt/texts.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <algorithm>
#include <utility>

namespace lumbrine {

namespace {

constexpr int textWidth = 320;

QLabel* paragraph() {
    auto* label = new QLabel;
    label->setWordWrap(true);
    label->setMinimumWidth(textWidth);
    return label;
}

} // namespace

KeysBox::KeysBox(Listener boxListener, QWidget* parent)
    : QDialog(parent), listener(std::move(boxListener)), advice(paragraph()), list(new QListWidget), code(new QLabel),
      letters(new QLabel), forget(new QPushButton), forgetAll(new QPushButton), paired(new QCheckBox),
      pairedAdvice(paragraph()), close(new QPushButton) {
    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(12);
    layout->addWidget(advice);
    layout->addWidget(list);
    layout->addWidget(code, 0, Qt::AlignHCenter);
    letters->setAlignment(Qt::AlignHCenter);
    letters->setTextFormat(Qt::PlainText);
    letters->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    layout->addWidget(letters);
    layout->addWidget(paired);
    layout->addWidget(pairedAdvice);
    auto* buttons = new QHBoxLayout;
    layout->addLayout(buttons);
    buttons->addWidget(forget);
    buttons->addWidget(forgetAll);
    buttons->addStretch();
    buttons->addWidget(close);
    close->setDefault(true);
    QObject::connect(list, &QListWidget::currentRowChanged, this, [this] { showChosen(); });
    QObject::connect(forget, &QAbstractButton::clicked, this, [this] {
        if (chosen() < page.rows.size()) listener.forget(std::string(page.rows[chosen()].name));
    });
    QObject::connect(forgetAll, &QAbstractButton::clicked, this, [this] { listener.forgetAll(); });
    QObject::connect(paired, &QAbstractButton::clicked, this, [this](bool on) { listener.letOnlyPairedIn(on); });
    QObject::connect(close, &QAbstractButton::clicked, this, &QDialog::accept);
}

void KeysBox::display(const KeysPage& newPage) {
    const std::string before = chosen() < page.rows.size() ? page.rows[chosen()].letters : std::string();
    page = newPage;
    setWindowTitle(shown(page.title));
    advice->setText(shown(page.advice));
    list->clear();
    for (const KeyRow& row : page.rows)
        list->addItem(shown(row.name + ", " + row.use));
    const auto same = std::ranges::find(page.rows, before, &KeyRow::letters);
    if (!page.rows.empty())
        list->setCurrentRow(same == page.rows.end() ? 0 : static_cast<int>(same - page.rows.begin()));
    forget->setText(shown(page.forgetButton));
    forgetAll->setText(shown(page.forgetAllButton));
    close->setText(shown(page.closeButton));
    paired->setText(shown(page.pairedSwitch));
    paired->setChecked(page.onlyPaired);
    paired->setEnabled(page.pairedAdvice.empty());
    pairedAdvice->setText(shown(page.pairedAdvice));
    pairedAdvice->setVisible(!page.pairedAdvice.empty());
    showChosen();
}

void KeysBox::showChosen() {
    const bool isThere = chosen() < page.rows.size();
    forget->setEnabled(isThere);
    forgetAll->setEnabled(!page.rows.empty());
    const std::string text = isThere ? page.rows[chosen()].letters : std::string();
    letters->setText(shown(text));
    code->clear();
    if (const auto made = text.empty() ? std::nullopt : makeQRCode(text)) code->setPixmap(pictureOf(*made));
    code->setAccessibleName(shown(text));
}

std::size_t KeysBox::chosen() const {
    return list->currentRow() < 0 ? page.rows.size() : static_cast<std::size_t>(list->currentRow());
}

} // namespace lumbrine
