// For tests: the status area of a desktop, as many have it. Programs publish their icon and menu on the message bus as
// values and get the user's actions as calls.
//
//     MessageBus bus;
//     StatusNotifierHost host(bus);
//     host.open();
//     ChildProcess program({...}, {.environment = {{"DBUS_SESSION_BUS_ADDRESS", bus.address()}}});
//     bus.waitUntil([&] { return host.hasIcon(); });
//     host.choose("Show Window");
#pragma once

#include "tests/desktop/message_bus.h"

#include <memory>
#include <string>
#include <vector>

namespace lumbrine::desktop {

class StatusNotifierHost {
public:
    struct MenuEntry {
        int id;
        std::string title; // "-" for a divider
        bool enabled;
        bool checked;
    };

    // Without status area until `open`, which is called once.
    explicit StatusNotifierHost(MessageBus& bus);
    ~StatusNotifierHost();
    void open();

    // Whether a program has an icon in the area, and the opacity (0-255) of the most opaque pixel in its largest
    // picture.
    bool hasIcon() const;
    int opacity() const;
    std::string toolTip() const;
    void clickIcon() const;

    std::vector<MenuEntry> menu() const;
    void choose(const std::string& title) const;

private:
    class Watcher;

    QVariant property(const QString& name) const;
    QDBusMessage callMenu(const QString& method, const QVariantList& arguments) const;

    MessageBus& bus;
    const std::unique_ptr<Watcher> watcher;
};

} // namespace lumbrine::desktop
