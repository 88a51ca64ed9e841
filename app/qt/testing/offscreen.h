// A desktop without a screen for tests of windows: the toolkit draws into memory, and there is no status area.
#pragma once

#include "app/qt/receiver_shell.h"
#include "app/qt/testing/palettes.h"
#include "app/receiver_app.h"
#include "app/testing/fake_login_service.h"
#include "model/testing/model_test.h"

#include <QAbstractButton>
#include <QLabel>
#include <QWidget>
#include <string>
#include <vector>

namespace lumbrine {

// Everything that waits in the toolkit's queue, drawing included.
void settleToolkit();

// The visible labels' texts that do not fit where they stand.
std::vector<std::string> cutTexts(const QWidget& window);

// The children of a class of the program's own, which the toolkit's search knows nothing of.
template <typename Wanted>
std::vector<Wanted*> childrenOf(const QWidget& window) {
    std::vector<Wanted*> found;
    for (auto* child : window.findChildren<QWidget*>())
        if (auto* wanted = dynamic_cast<Wanted*>(child)) found.push_back(wanted);
    return found;
}

QAbstractButton* buttonNamed(const QWidget& window, const std::string& accessibleName);

// A whole receiver with its shell in virtual time.
class ShellBench {
public:
    explicit ShellBench(bool japanese = false);
    ~ShellBench();

    // Lets virtual time pass, with the toolkit's turn every few milliseconds.
    void run(Duration duration);

    void open() {
        shell.openWindow();
        run(seconds(0.4));
    }

    ModelWorld world;
    ModelBench bench;
    FakeLoginService service;
    std::vector<std::string> printed;
    LoginItem item;
    ReceiverApp app;
    int quits = 0;
    ReceiverShell shell;
};

} // namespace lumbrine
