// For tests: a private message bus of the user's session, and this process's place on it.
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
class MessageBus {
public:
    // Returns when the bus runs; throws std::runtime_error when it does not start.
    MessageBus();
    ~MessageBus();
    MessageBus(const MessageBus&) = delete;
    MessageBus& operator=(const MessageBus&) = delete;

    std::string address() const;
    QDBusConnection connection() const { return ours; }

    // Makes `object` answer calls to the service at the path and below it; throws std::runtime_error when it cannot.
    void serve(const QString& service, const QString& path, QDBusVirtualObject& object);

    bool waitUntil(const std::function<bool()>& condition);

    QDBusMessage call(const QString& program, const QString& path, const QString& interface, const QString& method,
                      const QVariantList& arguments = {}) const;
    QVariant property(const QString& program, const QString& path, const QString& interface, const QString& name) const;

private:
    int count = 1;
    std::string name = "message bus";
    std::vector<char*> values{name.data(), nullptr};
    QCoreApplication application{count, values.data()};
    interop::TemporaryFolder folder;
    std::unique_ptr<interop::ChildProcess> bus;
    QDBusConnection ours;
};

} // namespace lumbrine::desktop
