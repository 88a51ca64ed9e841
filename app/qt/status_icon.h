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
    // Not on the screen until it is to appear.
    explicit StatusIcon(std::function<void(ScreenAction)> act) : listener(std::move(act)) {}

    // Once; where the desktop has no place for it, when it has one.
    void appear();

    void display(const StatusMenu& menu);

    // False on desktops without a place for such icons; the answer may change. Not to be asked before it has appeared.
    static bool isPossible() { return QSystemTrayIcon::isSystemTrayAvailable(); }

    const QMenu& menu() const { return popup; }
    double opacity() const { return shownOpacity; }

private:
    void build(const StatusMenu& menu);

    const std::function<void(ScreenAction)> listener;
    QMenu popup; // outlives the icon, which shows it
    std::unique_ptr<QSystemTrayIcon> icon;
    std::vector<QAction*> actions; // one for each item of the menu
    double shownOpacity = -1;
    QIcon picture;
    QString toolTip;
};

} // namespace lumbrine
