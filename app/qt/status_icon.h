// The icon in the desktop's status area, and its menu.
#pragma once

#include "app/receiver_screen.h"

#include <QAction>
#include <QMenu>
#include <QSystemTrayIcon>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace lumbrine {

class StatusIcon {
public:
    // Shows nothing until `appear`.
    explicit StatusIcon(std::function<void(ScreenAction)> listener) : listener(std::move(listener)) {}

    // Call once. Without a tray, the icon appears as soon as one does.
    void appear();

    void display(const StatusMenu& menu);

    // False while the desktop has no tray. Do not call it before `appear`: Qt keeps the first answer (StatusAreaWait).
    static bool isPossible() { return QSystemTrayIcon::isSystemTrayAvailable(); }

    const QMenu& menu() const { return popup; }
    double opacity() const { return shownOpacity; }

private:
    void build(const StatusMenu& menu);

    const std::function<void(ScreenAction)> listener;
    QMenu popup; // declared before the icon, which uses it until its destruction
    std::unique_ptr<QSystemTrayIcon> icon;
    std::vector<QAction*> actions; // one for each item of the menu
    double shownOpacity = -1;
    QIcon picture;
    QString toolTip;
};

} // namespace lumbrine
