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

} // namespace

ConnectBox::ConnectBox(const ConnectText& text, QWidget* parent) : QDialog(parent) {
    setWindowTitle(shown(text.title));
    auto* page = new QVBoxLayout(this);
    page->setSpacing(12);
    if (const auto code = makeQRCode(text.link)) {
        auto* picture = new QLabel(this);
        picture->setPixmap(pictureOf(*code));
        picture->setAccessibleName(shown(text.link));
        page->addWidget(picture, 0, Qt::AlignHCenter);
    }
    QString lines;
    for (const std::string& address : text.addresses)
        lines += (lines.isEmpty() ? "" : "\n") + shown(address);
    auto* addresses = new QLabel(lines, this);
    addresses->setTextFormat(Qt::PlainText);
    addresses->setAlignment(Qt::AlignHCenter);
    addresses->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    QFont bold = addresses->font();
    bold.setWeight(QFont::DemiBold);
    addresses->setFont(bold);
    page->addWidget(addresses);
    auto* advice = new QLabel(shown(text.advice), this);
    advice->setWordWrap(true);
    advice->setMinimumWidth(boxWidth);
    page->addWidget(advice);
    auto* close = new QPushButton(shown(text.closeButton), this);
    close->setDefault(true);
    page->addWidget(close, 0, Qt::AlignRight);
    QObject::connect(close, &QAbstractButton::clicked, this, &QDialog::accept);
}

} // namespace lumbrine
