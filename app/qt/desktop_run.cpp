#include "app/qt/desktop_run.h"

#include "app/qt/receiver_shell.h"
#include "app/qt/symbols.h"
#include "app/qt/toolkit_texts.h"
#include "app/receiver_ending.h"

#include <QApplication>

namespace lumbrine {

void DesktopRun::run() {
    ReceiverShell shell(app, runtime, [this] { loop.post([this] { end(); }); });
    end = [&] {
        shell.hide();
        std::shared_ptr<ReceiverModel> model = app.release();
        endReceiver(loop, runtime, process, streams, model);
    };
    const auto raise = [this] { app.perform(ScreenAction::showWindow); };
    instance.onStartOfAnother(raise);
    const BusPresence presence(identifier, raise);
    begin = [&shell] { shell.openWindow(); };
    loop.run();
    begin = [] {};
    // At logout the window system ends the loop before `end` was called. Then `end` runs in a second run of the loop.
    loop.post([this] { end(); });
    loop.run();
    end = [] {};
}

void introduceProgram(const QString& identifier, Bilingual text) {
    QApplication::setApplicationName(QStringLiteral("Lumbrine"));
    QApplication::setDesktopFileName(identifier);
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setWindowIcon(programIcon(Symbol::sliders, 1));
    auto* texts = new ToolkitTexts(text);
    texts->setParent(QCoreApplication::instance());
    QCoreApplication::installTranslator(texts);
}

} // namespace lumbrine
