#include "app/qt/connect_box.h"

#include "app/qt/texts.h"
#include "platform/linux/qr_code.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>

namespace lumbrine {

namespace {

constexpr int moduleSize = 6;  // pixels
constexpr int lightMargin = 4; // modules, as the standard asks for
constexpr int boxWidth = 320;

// Black on white on every desktop: a phone reads nothing else as well.
QPixmap pictureOf(const QRCode& code) {
    const int side = (code.width + 2 * lightMargin) * moduleSize;
    QPixmap picture(side, side);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    for (int row = 0; row < code.width; ++row)
        for (int column = 0; column < code.width; ++column)
            if (code.isDark(row, column))
                painter.fillRect((column + lightMargin) * moduleSize, (row + lightMargin) * moduleSize, moduleSize,
                                 moduleSize, Qt::black);
    return picture;
}

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

ConnectBox::ConnectBox(const ConnectText& text, QWidget* parent) : QDialog(parent) {
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
    page->addWidget(close, 0, Qt::AlignRight);
    QObject::connect(close, &QAbstractButton::clicked, this, &QDialog::accept);
}

} // namespace lumbrine
