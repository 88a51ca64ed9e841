#include "app/receiver_app.h"

#include <utility>

namespace lumbrine {

namespace {

// The code of ReceiverModel::bankMove for one of the four moves: the port of the HUI bank button.
int bankMoveKind(ScreenAction action) {
    switch (action) {
    case ScreenAction::channelBack:
        return 0;
    case ScreenAction::bankBack:
        return 1;
    case ScreenAction::channelForward:
        return 2;
    default:
        return 3;
    }
}

} // namespace

ReceiverApp::ReceiverApp(std::shared_ptr<ReceiverModel> model, LoginItem& loginItem, Bilingual text)
    : text(text), model(std::move(model)), loginItem(loginItem), loginOn(loginItem.isEnabled()) {}

ReceiverApp::~ReceiverApp() {
    release();
}

void ReceiverApp::connect(Shell desktopShell) {
    shell = std::move(desktopShell);
    if (model) model->onChange(shell.refresh);
}

void ReceiverApp::windowAppeared() {
    if (model) model->start();
}

void ReceiverApp::perform(ScreenAction action) {
    if (!model) return;
    switch (action) {
    case ScreenAction::none:
        break;
    case ScreenAction::reconnect:
        model->reconnectToPT();
        break;
    case ScreenAction::channelBack:
    case ScreenAction::bankBack:
    case ScreenAction::channelForward:
    case ScreenAction::bankForward:
        model->bankMove(bankMoveKind(action));
        break;
    case ScreenAction::testSweep:
        model->runDemo();
        break;
    case ScreenAction::showWindow:
        shell.openWindow();
        break;
    case ScreenAction::launchAtLogin:
        toggleLaunchAtLogin();
        break;
    case ScreenAction::quit:
        shell.quit();
        break;
    }
}

void ReceiverApp::tell(const std::string& line) {
    if (model) model->appendLog(line);
}

std::shared_ptr<ReceiverModel> ReceiverApp::release() {
    if (!model) return nullptr;
    model->onChange({});
    lastState = model->published();
    return std::exchange(model, nullptr);
}

// Asks the service for the state after the change, so that a failed change is undone on the screen.
void ReceiverApp::toggleLaunchAtLogin() {
    loginItem.set(!loginOn);
    loginOn = loginItem.isEnabled();
    shell.refresh();
}

} // namespace lumbrine
