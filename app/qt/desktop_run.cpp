#include "app/qt/desktop_run.h"

#include "app/qt/receiver_shell.h"
#include "app/qt/symbols.h"
#include "app/qt/toolkit_texts.h"
#include "app/receiver_ending.h"
#include "platform/linux/linux_system_info.h"
#include "platform/linux/running_page.h"
#include "platform/posix/primary_ipv4.h"

#include <QApplication>
#include <QSysInfo>
#include <QTime>
#include <cstdio>
#include <cstdlib>

namespace lumbrine {

namespace {

std::string noDisplay; // the line to end with

// Qt aborts where it finds no display, after lines about its plugins.
void endWithoutDisplay(QtMsgType type, const QMessageLogContext& /*where*/, const QString& /*text*/) {
    if (type != QtFatalMsg) return;
    std::fputs(noDisplay.c_str(), stderr);
    std::_Exit(1);
}

} // namespace

std::unique_ptr<QApplication> openDisplay(const std::string& program, const Bilingual& text, int& count,
                                          char** arguments) {
    noDisplay = program + text(": no display; lumbrine-headless needs none\n",
                               ": ディスプレイがありません。lumbrine-headless なら不要です\n");
    const QtMessageHandler before = qInstallMessageHandler(endWithoutDisplay);
    auto application = std::make_unique<QApplication>(count, arguments);
    qInstallMessageHandler(before);
    return application;
}

void DesktopRun::run() {
    ReceiverShell shell(app, runtime, [this] { loop.post([this] { end(); }); }, keys);
    end = [&] {
        shell.hide();
        std::shared_ptr<ReceiverModel> model = app.release();
        endReceiver(loop, runtime, process, streams, model);
    };
    const auto raise = [this] { app.perform(ScreenAction::showWindow); };
    instance.onStartOfAnother(raise);
    const BusPresence presence(identifier, raise);
    begin = [this, &shell] { hidden ? app.windowAppeared() : shell.openWindow(); };
    loop.run();
    begin = [] {};
    // At logout the window system ends the loop before `end` was called. Then `end` runs in a second run of the loop.
    loop.post([this] { end(); });
    loop.run();
    end = [] {};
}

ReceiverApp::Surroundings surroundings(Runtime& runtime, HostNames& hosts, const std::string& version) {
    return {.runtime = runtime,
            .system = HostSystem::linuxDesktop,
            .version = version,
            .systemName = QSysInfo::prettyProductName().toStdString() + ", Qt " + qVersion(),
            .addresses = [] { return reachableIPv4(listIPv4Interfaces()); },
            .page =
                [](const std::string& host, std::uint16_t port) {
                    const LinuxSystemInfo computer;
                    return pageAddress([&](const std::string& name) { return computer.environment(name); }, host, port);
                },
            .hosts = &hosts,
            .timeOfDay = [] { return QTime::currentTime().toString(QStringLiteral("HH:mm:ss")).toStdString(); }};
}

void introduceProgram(const QString& identifier, Bilingual text) {
    QApplication::setApplicationName(QStringLiteral("Lumbrine"));
    QApplication::setDesktopFileName(identifier);
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setWindowIcon(programIcon(1));
    auto* texts = new ToolkitTexts(text);
    texts->setParent(QCoreApplication::instance());
    QCoreApplication::installTranslator(texts);
}

} // namespace lumbrine
