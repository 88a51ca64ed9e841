#include "app/qt/testing/offscreen.h"

#include <QApplication>
#include <algorithm>
#include <array>
#include <memory>

namespace lumbrine {

namespace {

// The application object lives from before the first test until after the last.
class OffscreenDesktop final : public testing::Environment {
public:
    void SetUp() override {
        // This desktop cannot do much, and says so each time.
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
        application = std::make_unique<QApplication>(count, arguments.data());
        QApplication::setQuitOnLastWindowClosed(false);
        QApplication::setPalette(lightPalette());
    }
    void TearDown() override { application.reset(); }

private:
    int count = 1;
    std::string name = "lumbrine";
    std::array<char*, 2> arguments{name.data(), nullptr};
    std::unique_ptr<QApplication> application;
};

const auto* const desktop = testing::AddGlobalTestEnvironment(new OffscreenDesktop);

} // namespace

void settleToolkit() {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

std::vector<std::string> cutTexts(const QWidget& window) {
    std::vector<std::string> cut;
    for (const auto* label : window.findChildren<QLabel*>()) {
        if (!label->isVisible() || label->text().isEmpty()) continue;
        const bool fits = label->wordWrap() ? label->heightForWidth(label->width()) <= label->height()
                                            : label->sizeHint().width() <= label->width() &&
                                                  label->sizeHint().height() <= label->height();
        if (!fits) cut.push_back(label->text().toStdString());
    }
    for (const auto* button : window.findChildren<QAbstractButton*>())
        if (button->isVisible() && !button->text().isEmpty() && button->sizeHint().width() > button->width())
            cut.push_back(button->text().toStdString());
    return cut;
}

QAbstractButton* buttonNamed(const QWidget& window, const std::string& accessibleName) {
    const auto buttons = window.findChildren<QAbstractButton*>();
    const auto found = std::ranges::find_if(buttons, [&](const QAbstractButton* button) {
        return button->accessibleName().toStdString() == accessibleName;
    });
    return found == buttons.end() ? nullptr : *found;
}

ShellBench::ShellBench(bool japanese)
    : bench(world, {.japanese = japanese}),
      item(service, Bilingual(japanese), [this](const std::string& line) { printed.push_back(line); }),
      app(bench.model, item, Bilingual(japanese), {.runtime = world.runtime}),
      shell(app, world.runtime, [this] { ++quits; }) {}

ShellBench::~ShellBench() {
    shell.hide();
    app.release();
    settleToolkit();
}

void ShellBench::run(Duration duration) {
    constexpr Duration slice = seconds(0.005);
    for (Duration passed{}; passed < duration; passed += slice) {
        world.runtime.runFor(std::min(slice, duration - passed));
        settleToolkit();
    }
}

} // namespace lumbrine
