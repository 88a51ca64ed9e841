#include "app/qt/connect_box.h"

#include "app/qt/qr_picture.h"
#include "app/qt/texts.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace lumbrine {

namespace {

constexpr int boxWidth = 320;

QLabel* codeLabel(const QRCode& code, const std::string& link) {
    auto* label = new QLabel;
    label->setPixmap(pictureOf(code));
    label->setAccessibleName(shown(link));
    return label;
}

QLabel* paragraph(const std::string& text) {
    auto* label = new QLabel(shown(text));
    label->setWordWrap(true);
    label->setMinimumWidth(boxWidth);
    return label;
}

QVBoxLayout* wayOfTheApp(const ConnectText& text) {
    auto* way = new QVBoxLayout;
    way->setSpacing(12);
    if (const auto code = makeQRCode(text.link)) way->addWidget(codeLabel(*code, text.link), 0, Qt::AlignHCenter);
    QString lines;
    for (const std::string& address : text.addresses)
        lines += (lines.isEmpty() ? "" : "\n") + shown(address);
    auto* addresses = new QLabel(lines);
    addresses->setTextFormat(Qt::PlainText);
    addresses->setAlignment(Qt::AlignHCenter);
    addresses->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    QFont bold = addresses->font();
    bold.setWeight(QFont::DemiBold);
    addresses->setFont(bold);
    way->addWidget(addresses);
    way->addWidget(paragraph(text.advice));
    way->addStretch();
    return way;
}

} // namespace

ConnectBox::ConnectBox(const ConnectText& text, const std::function<void()>& showKeys, QWidget* parent)
    : QDialog(parent) {
    setWindowTitle(shown(text.title));
    auto* page = new QVBoxLayout(this);
    page->setSpacing(12);
    auto* ways = new QHBoxLayout;
    ways->setSpacing(24);
    page->addLayout(ways);
    ways->addLayout(wayOfTheApp(text));
    if (const auto code = text.pageLink.empty() ? std::nullopt : makeQRCode(text.pageLink)) {
        auto* browser = new QVBoxLayout;
        browser->setSpacing(12);
        browser->addWidget(codeLabel(*code, text.pageLink), 0, Qt::AlignHCenter);
        browser->addWidget(paragraph(text.pageAdvice));
        browser->addStretch();
        ways->addLayout(browser);
    }
    auto* close = new QPushButton(shown(text.closeButton), this);
    close->setDefault(true);
    auto* buttons = new QHBoxLayout;
    page->addLayout(buttons);
    if (showKeys) {
        auto* keys = new QPushButton(shown(text.keysButton), this);
        QObject::connect(keys, &QAbstractButton::clicked, this, showKeys);
        buttons->addWidget(keys);
    }
    buttons->addStretch();
    buttons->addWidget(close);
    QObject::connect(close, &QAbstractButton::clicked, this, &QDialog::accept);
}

} // namespace lumbrine
