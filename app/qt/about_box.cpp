#include "app/qt/about_box.h"

#include "app/qt/symbols.h"
#include "app/qt/texts.h"

#include <QBoxLayout>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

namespace lumbrine {

namespace {

constexpr int aboutWidth = 560;
constexpr int aboutHeight = 420;
constexpr double aboutHeading = 1.3;

} // namespace

AboutBox::AboutBox(const AboutText& text, QWidget* parent) : QDialog(parent) {
    setWindowTitle(shown(text.title));
    auto* page = new QVBoxLayout(this);
    auto* top = new QHBoxLayout;
    auto* icon = new QLabel(this);
    icon->setPixmap(programIcon(1).pixmap(48));
    auto* heading = new QLabel(shown(text.heading), this);
    QFont large = heading->font();
    large.setPointSizeF(large.pointSizeF() * aboutHeading);
    large.setWeight(QFont::DemiBold);
    heading->setFont(large);
    top->addWidget(icon);
    top->addWidget(heading, 1);
    page->addLayout(top);

    auto* body = new QPlainTextEdit(shown(text.body).trimmed(), this);
    body->setReadOnly(true);
    body->setTabChangesFocus(true);
    body->setAccessibleName(shown(text.heading));
    page->addWidget(body, 1);

    auto* buttons = new QHBoxLayout;
    auto* copy = new QPushButton(shown(text.copyButton), this);
    auto* close = new QPushButton(shown(text.closeButton), this);
    close->setDefault(true);
    buttons->addStretch(1);
    buttons->addWidget(copy);
    buttons->addWidget(close);
    page->addLayout(buttons);
    QObject::connect(copy, &QAbstractButton::clicked, this,
                     [report = shown(text.report)] { QGuiApplication::clipboard()->setText(report); });
    QObject::connect(close, &QAbstractButton::clicked, this, &QDialog::accept);
    resize(aboutWidth, aboutHeight);
}

} // namespace lumbrine
