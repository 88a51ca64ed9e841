#include "app/receiver_app.h"

#include <algorithm>
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

ReceiverApp::ReceiverApp(std::shared_ptr<ReceiverModel> receiver, LoginItem& loginItem, Bilingual text,
                         Surroundings surroundings)
    : text(text), model(std::move(receiver)), loginItem(loginItem), surroundings(std::move(surroundings)),
      setUp(this->surroundings.runtime, [this] { shell.refresh(); }),
      clientName(this->surroundings.runtime, this->surroundings.hosts, [this] { shell.refresh(); }),
      loginOn(loginItem.isEnabled()) {
    recordNewLines();
    model->onChange([this] { changed(); });
}

ReceiverApp::~ReceiverApp() {
    release();
}

void ReceiverApp::connect(Shell desktopShell) {
    shell = std::move(desktopShell);
}

void ReceiverApp::changed() {
    recordNewLines();
    setUp.look(state());
    clientName.look(state());
    shell.refresh();
}

ReceiverView ReceiverApp::view() const {
    ReceiverView view = receiverView(state(), text, surroundings.runtime.now());
    view.onlyProblems.on = onlyProblems;
    view.client.detail = clientName.in(view.client.detail);
    return view;
}

StatusMenu ReceiverApp::menu() const {
    StatusMenu menu = statusMenu(state(), loginOn, text);
    for (MenuItem& item : menu.items)
        if (item.kind == MenuItem::Kind::status) item.title = clientName.in(item.title);
    return menu;
}

void ReceiverApp::seekTo(std::size_t track) {
    if (model) model->seekTo(track);
}

SetUpCard ReceiverApp::card() const {
    if (!setUp.showsCard()) return {};
    SetUpCard card = setUpCard(state(), surroundings.system, text);
    for (SetUpRow& row : card.rows) {
        row.text = clientName.in(row.text);
        row.spoken = clientName.in(row.spoken);
    }
    return card;
}

AboutText ReceiverApp::about() const {
    return aboutText({.version = surroundings.version,
                      .systemName = surroundings.systemName,
                      .checks = diagnosis(state(), surroundings.system, text),
                      .log = record.text(),
                      .recorded = static_cast<bool>(surroundings.saveReport)},
                     text);
}

void ReceiverApp::saveReport(std::string file, std::function<void(const Saved&)> done) const {
    surroundings.runtime.background(Priority::utility, [save = surroundings.saveReport, &runtime = surroundings.runtime,
                                                        file = std::move(file), done = std::move(done),
                                                        list = listed(diagnosis(state(), surroundings.system, text))] {
        runtime.postMain([saved = save(file, list), done] { done(saved); });
    });
}

ConnectText ReceiverApp::connection() {
    if (model) model->readAddress();
    const PublishedState& now = state();
    return connectText(now, surroundings.addresses(), surroundings.page(now.localIP, now.health.port), text);
}

void ReceiverApp::recordNewLines() {
    const PublishedState& now = state();
    if (recorded == now.linesLogged) return;
    const std::string time = surroundings.timeOfDay();
    const std::uint64_t fresh = std::min<std::uint64_t>(now.linesLogged - recorded, now.logLines.size());
    for (std::size_t i = now.logLines.size() - static_cast<std::size_t>(fresh); i < now.logLines.size(); ++i)
        record.add(time, withPlainAddresses(now.logLines[i]));
    recorded = now.linesLogged;
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
    case ScreenAction::connectPhone:
        shell.showConnect();
        break;
    case ScreenAction::session:
        shell.showSession();
        break;
    case ScreenAction::onlyProblems:
        onlyProblems = !onlyProblems;
        shell.refresh();
        break;
    case ScreenAction::about:
        shell.showAbout();
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
