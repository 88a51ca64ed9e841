#include "app/qt/status_icon.h"

#include "app/qt/symbols.h"
#include "app/qt/texts.h"

#include <utility>

namespace lumbrine {

void StatusIcon::appear() {
    if (icon) return;
    icon = std::make_unique<QSystemTrayIcon>(picture);
    icon->setToolTip(toolTip);
    QObject::connect(icon.get(), &QSystemTrayIcon::activated, icon.get(),
                     [this](QSystemTrayIcon::ActivationReason reason) {
                         if (reason == QSystemTrayIcon::Trigger) listener(ScreenAction::showWindow);
                     });
    icon->setContextMenu(&popup);
    if (!picture.isNull()) icon->show();
}

void StatusIcon::display(const StatusMenu& menu) {
    if (actions.size() != menu.items.size()) build(menu);
    for (std::size_t i = 0; i < actions.size(); ++i) {
        const MenuItem& item = menu.items[i];
        if (item.kind == MenuItem::Kind::divider) continue;
        if (const QString title = shown(item.title); title != actions[i]->text()) actions[i]->setText(title);
        actions[i]->setEnabled(item.enabled);
        actions[i]->setChecked(item.on);
    }
    if (menu.opacity != shownOpacity) {
        shownOpacity = menu.opacity;
        picture = programIcon(menu.opacity);
        if (icon) {
            icon->setIcon(picture);
            icon->show();
        }
    }
    if (QString spoken = shown(menu.spoken); spoken != toolTip) {
        toolTip = std::move(spoken);
        if (icon) icon->setToolTip(toolTip);
    }
}

// A click toggles a checkable item by itself; `display` sets the real state after each action.
void StatusIcon::build(const StatusMenu& menu) {
    popup.clear();
    actions.clear();
    for (const MenuItem& item : menu.items) {
        if (item.kind == MenuItem::Kind::divider) {
            actions.push_back(popup.addSeparator());
            continue;
        }
        QAction* action = popup.addAction(shown(item.title));
        action->setCheckable(item.kind == MenuItem::Kind::toggle);
        QObject::connect(action, &QAction::triggered, &popup, [this, wanted = item.action] { listener(wanted); });
        actions.push_back(action);
    }
}

} // namespace lumbrine
