#include "app/qt/about_box.h"

#include "app/qt/symbols.h"
#include "app/qt/texts.h"

#include <QBoxLayout>
#include <QClipboard>
#include <QFileDialog>
#include <QGuiApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <utility>

namespace lumbrine {

namespace {

constexpr int aboutWidth = 560;
constexpr int aboutHeight = 420;
constexpr double aboutHeading = 1.3;

} // namespace

AboutBox::AboutBox(const AboutText& text, Save save, QWidget* parent) : QDialog(parent) {
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
    if (!text.saveButton.empty()) {
        auto* saving = new QPushButton(shown(text.saveButton), this);
        buttons->addWidget(saving);
        QObject::connect(saving, &QAbstractButton::clicked, this,
                         [this, text, save = std::move(save)] { chooseFile(text, save); });
    }
    buttons->addWidget(copy);
    buttons->addWidget(close);
    page->addLayout(buttons);
    QObject::connect(copy, &QAbstractButton::clicked, this,
                     [report = shown(text.report)] { QGuiApplication::clipboard()->setText(report); });
    QObject::connect(close, &QAbstractButton::clicked, this, &QDialog::accept);
    resize(aboutWidth, aboutHeight);
}

void AboutBox::chooseFile(const AboutText& text, const Save& save) {
    auto* dialog = new QFileDialog(this, shown(text.saveButton));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->selectFile(QStringLiteral("lumbrine-report.blackbox"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(dialog, &QFileDialog::fileSelected, this, [this, save, text](const QString& file) {
        save(file.toStdString(), [box = QPointer(this), text](const ReceiverApp::Saved& saved) {
            if (saved || !box) return;
            auto* message = new QMessageBox(QMessageBox::Warning, shown(text.title),
                                            shown(text.notSaved + "\n" + saved.error()), QMessageBox::Close, box);
            message->setAttribute(Qt::WA_DeleteOnClose);
            message->open();
        });
    });
    dialog->open();
}

} // namespace lumbrine
