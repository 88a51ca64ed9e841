#include "app/qt/receiver_shell.h"

#include "app/key_keeper.h"
#include "app/qt/about_box.h"
#include "app/qt/connect_box.h"
#include "app/qt/keys_box.h"
#include "app/qt/session_box.h"
#include "app/qt/symbols.h"
#include "app/qt/texts.h"

#include <QMessageBox>
#include <QPushButton>
#include <algorithm>
#include <utility>

namespace lumbrine {

ReceiverShell::ReceiverShell(ReceiverApp& app, Runtime& runtime, std::function<void()> quitProgram, KeyKeeper* keys)
    : app(app), runtime(runtime), quitProgram(std::move(quitProgram)), keys(keys),
      window({.act = [this](ScreenAction action) { act(action); },
              .appeared = [this] { windowAppeared(); },
              .closed = [this] { windowClosed(); }}),
      icon([this](ScreenAction action) { act(action); }), statusArea([this] { icon.appear(); }) {
    app.connect({.openWindow = [this] { openWindow(); },
                 .refresh = [this] { refreshSoon(); },
                 .quit = [this] { this->quitProgram(); },
                 .showAbout = [this] { showAbout(); },
                 .showConnect = [this] { showConnect(); },
                 .showSession = [this] { showSession(); }});
    icon.display(app.menu());
}

ReceiverShell::~ReceiverShell() {
    app.connect({.openWindow = [] {}, .refresh = [] {}, .quit = [] {}});
}

void ReceiverShell::openWindow() {
    window.display(app.view(), app.card(), app.logRows()); // before `show`, so that the window never appears empty
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

void ReceiverShell::hide() {
    farewell.reset();
    about.reset();
    phoneBox.reset();
    sessionBox.reset();
    keysBox.reset();
    window.hide();
}

// A click toggles the menu item by itself, so the icon must display the real state after the action.
void ReceiverShell::act(ScreenAction action) {
    app.perform(action);
    if (action == ScreenAction::launchAtLogin) icon.display(app.menu());
}

void ReceiverShell::windowAppeared() {
    app.windowAppeared();
    refreshSoon();
}

void ReceiverShell::windowClosed() {
    statusArea.end(); // without a status area until now, the user cannot see an icon
    if (!StatusIcon::isPossible()) tellThatItGoesOn();
}

void ReceiverShell::tellThatItGoesOn() {
    if (farewell) return;
    const Bilingual& text = app.text;
    app.tell(text("⚠️ Window closed; Lumbrine goes on. "
                  "This desktop has no status area: start Lumbrine again to see the window",
                  "⚠️ ウィンドウを閉じましたが Lumbrine は動作を続けます。"
                  "このデスクトップにはステータス領域がありません。"
                  "ウィンドウを再度表示するには、Lumbrine をもう一度起動してください"));
    farewell = std::make_unique<QMessageBox>();
    farewell->setWindowTitle(QStringLiteral("Lumbrine"));
    farewell->setIconPixmap(programIcon(1).pixmap(48));
    farewell->setText(shown(text("Lumbrine goes on", "Lumbrine は動作を続けます")));
    farewell->setInformativeText(
        shown(text("This desktop has no status area for Lumbrine's icon. Start Lumbrine again to see the window.",
                   "このデスクトップには Lumbrine のアイコンを置くステータス領域がありません。"
                   "ウィンドウを再度表示するには、Lumbrine をもう一度起動してください。")));
    const auto* quit = farewell->addButton(shown(text("Quit", "終了")), QMessageBox::DestructiveRole);
    farewell->setDefaultButton(farewell->addButton(shown(text("OK", "OK")), QMessageBox::AcceptRole));
    QObject::connect(quit, &QAbstractButton::clicked, farewell.get(), [this] { act(ScreenAction::quit); });
    farewell->setModal(false);
    farewell->show();
}

void ReceiverShell::showAbout() {
    about = std::make_unique<AboutBox>(
        app.about(),
        [this](const std::string& file, std::function<void(const ReceiverApp::Saved&)> done) {
            app.saveReport(file, std::move(done));
        },
        &window);
    about->show();
}

void ReceiverShell::showConnect() {
    const auto toKeys = keys == nullptr ? std::function<void()>() : [this] { showKeys(); };
    phoneBox = std::make_unique<ConnectBox>(app.connection(), toKeys, &window);
    phoneBox->show();
}

void ReceiverShell::showSession() {
    sessionBox =
        std::make_unique<SessionBox>(SessionBox::Listener{.searched = [this] { refreshSoon(); },
                                                          .chosen = [this](std::size_t track) { app.seekTo(track); }},
                                     &window);
    sessionBox->display(app.session({}));
    sessionBox->show();
}

void ReceiverShell::showKeys() {
    const auto display = [this] { keysBox->display(keys->page()); };
    keysBox = std::make_unique<KeysBox>(KeysBox::Listener{.forget =
                                                              [this, display](const std::string& name) {
                                                                  keys->forget(name);
                                                                  display();
                                                              },
                                                          .forgetAll =
                                                              [this, display] {
                                                                  keys->forgetAll();
                                                                  display();
                                                              },
                                                          .letOnlyPairedIn =
                                                              [this, display](bool on) {
                                                                  keys->letOnlyPairedIn(on);
                                                                  display();
                                                              }},
                                        &window);
    display();
    keysBox->show();
}

void ReceiverShell::refreshSoon() {
    if (std::exchange(refreshIsDue, true)) return;
    const Duration wait = std::max(lastRefresh + shortestRefresh - runtime.now(), Duration::zero());
    runtime.postMainAfter(wait, [this, alive = std::weak_ptr(life)] {
        if (alive.lock()) refresh();
    });
}

void ReceiverShell::refresh() {
    refreshIsDue = false;
    lastRefresh = runtime.now();
    icon.display(app.menu());
    if (window.isOnScreen()) window.display(app.view(), app.card(), app.logRows());
    if (sessionBox && sessionBox->isVisible()) sessionBox->display(app.session(sessionBox->search()));
}

} // namespace lumbrine
