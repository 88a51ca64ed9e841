// A message bus of the test's own with a status area on it, as many desktops have it: programs tell their icon and
// their menu as values, and what the user does there comes to them as calls.
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

// One at a time in a process, and everything on one thread. Wait with `waitUntil`, which lets the bus have its turn.
class StatusNotifierHost {
public:
    struct MenuEntry {
        int id;
        std::string title; // "-" for a divider
        bool enabled;
        bool checked;
    };

    // Returns when the bus is there; throws std::runtime_error when that cannot be. The status area is there when it
    // has been opened, once.
    StatusNotifierHost();
    void open();
    ~StatusNotifierHost();
    StatusNotifierHost(const StatusNotifierHost&) = delete;
    StatusNotifierHost& operator=(const StatusNotifierHost&) = delete;

    std::string address() const;

    bool waitUntil(const std::function<bool()>& condition);

    // The one icon that a program has put there, and how opaque the strongest pixel of its largest picture is, 0-255.
    bool hasIcon() const;
    int opacity() const;
    std::string toolTip() const;
    void clickIcon() const;

    std::vector<MenuEntry> menu() const;
    void choose(const std::string& title) const;

    // Whatever else a desktop asks a program for; false when there is no such program or it refuses.
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
