#include "app/qt/receiver_window.h"

#include "app/qt/log_view.h"
#include "app/qt/set_up_box.h"
#include "app/qt/status_rows.h"
#include "app/qt/strips_view.h"
#include "app/qt/symbols.h"
#include "app/qt/texts.h"

#include <QBoxLayout>
#include <QCloseEvent>
#include <QEvent>
#include <QPushButton>
#include <QShortcut>
#include <algorithm>
#include <utility>

namespace lumbrine {

namespace {

constexpr int margin = 16;
constexpr int spacing = 10;
constexpr int usualWidth = 640; // names of nine letters fit on eight strips in a row
constexpr int usualHeight = 680;
constexpr double headingSize = 1.3; // times the window's font size
constexpr int headingSymbol = 26;
constexpr int lineSymbol = 18;

// A symbol in the colour of the text beside it.
class SymbolLabel final : public QWidget {
public:
    SymbolLabel(Symbol symbol, int size, QWidget* parent) : QWidget(parent), symbol(symbol) {
        setFixedSize(size, size);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        paintSymbol(painter, rect(), symbol, palette().color(QPalette::WindowText));
    }

private:
    const Symbol symbol;
};

void setTextIfNew(QLabel* label, const std::string& text) {
    if (const QString wanted = shown(text); wanted != label->text()) label->setText(wanted);
}

QLabel* plainLabel(QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    return label;
}

} // namespace

ReceiverWindow::ReceiverWindow(Listener listener)
    : listener(std::move(listener)), heading(plainLabel(this)), proTools(new StatusRow(this)),
      client(new StatusRow(this)), notice(new NoticeBox(this)), setUp(new SetUpBox(this)),
      session(makeButton("Ctrl+F")), about(makeButton("F1")), reconnect(makeButton("Alt+R")), test(makeButton("Alt+T")),
      connectPhone(makeButton("Alt+C")), addressTitle(plainLabel(this)), address(plainLabel(this)),
      moves{makeButton("Alt+PgUp"), makeButton("Alt+Left"), makeButton("Alt+Right"), makeButton("Alt+PgDown")},
      position(plainLabel(this)), strips(new StripsView(this)), logHeading(plainLabel(this)),
      onlyProblems(new QCheckBox(this)), log(new LogView(this)) {
    setObjectName(shown(windowIdentifier));
    setWindowIcon(programIcon(1));
    arrange();
    addKeys();
    resize(usualWidth, usualHeight);
}

QAbstractButton* ReceiverWindow::makeButton(const QString& shortcut) {
    auto* button = new QPushButton(this);
    button->setShortcut(QKeySequence(shortcut));
    button->setAutoDefault(false);
    return button;
}

void ReceiverWindow::arrange() {
    auto* page = new QVBoxLayout(this);
    page->setContentsMargins(margin, margin, margin, margin);
    page->setSpacing(spacing);

    page->addLayout(makeHeading());

    auto* card = new Card(this);
    auto* rows = new QVBoxLayout(card);
    rows->setContentsMargins(12, 8, 12, 8);
    rows->setSpacing(4);
    rows->addWidget(proTools);
    rows->addWidget(client);
    page->addWidget(card);
    page->addWidget(notice);
    page->addWidget(setUp);

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    buttons->addWidget(reconnect);
    buttons->addWidget(test);
    buttons->addStretch(1);
    connectPhone->setFixedWidth(connectPhone->fontMetrics().height() + 18);
    buttons->addWidget(connectPhone);
    page->addLayout(buttons);
    page->addLayout(makeAddressRow());

    auto* area = new QVBoxLayout;
    area->setSpacing(2);
    position->setAlignment(Qt::AlignRight);
    area->addWidget(position);
    area->addWidget(strips, 1);
    page->addLayout(area, 3);

    QFont small = logHeading->font();
    small.setWeight(QFont::DemiBold);
    logHeading->setFont(small);
    logHeading->setBuddy(log);
    auto* logLine = new QHBoxLayout;
    logLine->addWidget(logHeading);
    logLine->addStretch(1);
    logLine->addWidget(onlyProblems);
    page->addLayout(logLine);
    page->addWidget(log, 2);
}

QLayout* ReceiverWindow::makeHeading() {
    auto* row = new QHBoxLayout;
    row->setSpacing(8);
    QFont large = heading->font();
    large.setPointSizeF(large.pointSizeF() * headingSize);
    large.setWeight(QFont::DemiBold);
    heading->setFont(large);
    row->addWidget(new SymbolLabel(Symbol::sliders, headingSymbol, this));
    row->addWidget(heading);
    row->addStretch(1);
    for (QAbstractButton* button : {session, about}) {
        button->setFixedWidth(button->fontMetrics().height() + 18);
        row->addWidget(button);
    }
    return row;
}

QLayout* ReceiverWindow::makeAddressRow() {
    auto* row = new QHBoxLayout;
    row->setSpacing(6);
    row->addWidget(new SymbolLabel(Symbol::network, lineSymbol, this));
    row->addWidget(addressTitle);
    address->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    address->setFocusPolicy(Qt::StrongFocus);
    QFont bold = address->font();
    bold.setWeight(QFont::DemiBold);
    address->setFont(bold);
    row->addWidget(address);
    row->addStretch(1);
    auto* group = new QHBoxLayout;
    group->setSpacing(4);
    for (QAbstractButton* move : moves) {
        move->setFixedWidth(move->fontMetrics().height() + 18);
        group->addWidget(move);
    }
    row->addLayout(group);
    return row;
}

// Keys for closing the window and for ending the program. On a desktop without status area there is no menu for it.
void ReceiverWindow::addKeys() {
    auto* close = new QShortcut(QKeySequence(QKeySequence::Close), this);
    QObject::connect(close, &QShortcut::activated, this, [this] { this->close(); });
    auto* quit = new QShortcut(QKeySequence(QStringLiteral("Ctrl+Q")), this);
    QObject::connect(quit, &QShortcut::activated, this, [this] { listener.act(ScreenAction::quit); });
}

void ReceiverWindow::display(const ReceiverView& view, const SetUpCard& card, const std::vector<LogRow>& logRows) {
    if (const QString title = shown(view.windowTitle); title != windowTitle()) setWindowTitle(title);
    setTextIfNew(heading, view.heading);
    proTools->display(view.proTools);
    client->display(view.client);
    notice->display(view.notice);
    setUp->display(card);
    display(reconnect, view.reconnect);
    display(test, view.test);
    display(about, view.about);
    display(connectPhone, view.connectPhone);
    setTextIfNew(addressTitle, view.address.title);
    setTextIfNew(address, view.address.address);
    address->setAccessibleName(shown(view.address.title + " " + view.address.address));
    for (std::size_t i = 0; i < moves.size(); ++i)
        display(moves[i], view.moves[i]);
    display(session, view.session);
    setTextIfNew(position, view.position);
    strips->setAccessibleName(shown(view.stripsName));
    strips->display(view.strips, view.proTools.ok);
    setTextIfNew(logHeading, view.logHeading);
    display(view.onlyProblems);
    log->setAccessibleName(shown(view.logHeading));
    log->display(logRows);
}

// The text of a button never changes, so only the first call does something.
void ReceiverWindow::display(QAbstractButton* button, const ScreenButton& shownButton) {
    if (!button->accessibleName().isEmpty()) return;
    const QKeySequence keys = button->shortcut();
    button->setIcon(symbolIcon(shownButton.symbol));
    button->setText(shown(shownButton.title));
    button->setShortcut(keys); // setText has removed it
    const std::string name = shownButton.help.empty() ? shownButton.title : shownButton.help;
    button->setToolTip(shownTip(name + " — " + keys.toString(QKeySequence::NativeText).toStdString()));
    button->setAccessibleName(shown(shownButton.title.empty() ? shownButton.help : shownButton.title));
    if (!shownButton.title.empty()) button->setAccessibleDescription(shown(shownButton.help));
    QObject::connect(button, &QAbstractButton::clicked, this,
                     [this, action = shownButton.action] { listener.act(action); });
}

// The toggle may also be switched by somebody else than its user, so its state is set each time.
void ReceiverWindow::display(const ScreenToggle& toggle) {
    if (onlyProblems->text().isEmpty()) {
        onlyProblems->setText(shown(toggle.title));
        onlyProblems->setShortcut(QKeySequence(QStringLiteral("Alt+W")));
        onlyProblems->setAccessibleName(shown(toggle.title));
        onlyProblems->setToolTip(shownTip(toggle.title + " — Alt+W"));
        QObject::connect(onlyProblems, &QAbstractButton::clicked, this,
                         [this, action = toggle.action] { listener.act(action); });
    }
    onlyProblems->setChecked(toggle.on);
}

void ReceiverWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (focusWidget() == nullptr) setFocus(); // otherwise Qt focuses a button, and the space bar presses it
    listener.appeared();
}

void ReceiverWindow::closeEvent(QCloseEvent* event) {
    QWidget::closeEvent(event);
    if (event->isAccepted()) listener.closed();
}

void ReceiverWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange && isOnScreen()) listener.appeared();
}

void ReceiverWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    keepTallEnough();
}

bool ReceiverWindow::event(QEvent* event) {
    const bool handled = QWidget::event(event);
    if (event->type() == QEvent::LayoutRequest) keepTallEnough();
    return handled;
}

// Wrapped texts need more height in a narrow window. Qt's layout does not include that in the window's minimum size.
void ReceiverWindow::keepTallEnough() {
    const QSize least = layout()->totalMinimumSize();
    const int leastWidth = std::max(minimumWindowWidth, least.width());
    const int wrapped = layout()->totalMinimumHeightForWidth(std::max(width(), leastWidth));
    setMinimumSize(leastWidth, std::max({minimumWindowHeight, least.height(), wrapped}));
}

} // namespace lumbrine
