// For tests: a private message bus with a status area, as many desktops have it. Programs publish their icon and menu
// as values and get the user's actions as calls.
//
//     StatusNotifierHost host;
//     ChildProcess program({...}, {.environment = {{"DBUS_SESSION_BUS_ADDRESS", host.address()}}});
//     host.waitUntil([&] { return host.hasIcon(); });
//     host.choose("Show Window");
#pragma once

#include "tests/interop/child_process.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace lumbrine::desktop {

// Only one at a time in a process, and only on one thread. Wait with `waitUntil`, which processes the bus meanwhile.
class StatusNotifierHost {
public:
    struct MenuEntry {
        int id;
        std::string title; // "-" for a divider
        bool enabled;
        bool checked;
    };

    // Returns when the bus runs; throws std::runtime_error when it does not start. `open` adds the status area; call it
    // once.
    StatusNotifierHost();
    void open();
    ~StatusNotifierHost();
    StatusNotifierHost(const StatusNotifierHost&) = delete;
    StatusNotifierHost& operator=(const StatusNotifierHost&) = delete;

    std::string address() const;

    bool waitUntil(const std::function<bool()>& condition);

    // Whether a program has an icon in the area, and the opacity (0-255) of the most opaque pixel in its largest
    // picture.
    bool hasIcon() const;
    int opacity() const;
    std::string toolTip() const;
    void clickIcon() const;

    std::vector<MenuEntry> menu() const;
    void choose(const std::string& title) const;

    // Makes any other call of a desktop to a program. False when the program is not there or refuses.
    bool ask(const QString& program, const QString& path, const QString& interface, const QString& method,
             const QVariantList& arguments) const;

private:
    class Watcher;

    QVariant property(const QString& name) const;
    QDBusMessage callMenu(const QString& method, const QVariantList& arguments) const;

    int count = 1;
    std::string name = "status area";
    std::vector<char*> values{name.data(), nullptr};
    QCoreApplication application{count, values.data()};
    interop::TemporaryFolder folder;
    std::unique_ptr<interop::ChildProcess> bus;
    std::unique_ptr<Watcher> watcher;
    QDBusConnection connection;
};

} // namespace lumbrine::desktop
