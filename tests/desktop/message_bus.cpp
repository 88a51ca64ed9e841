#include "tests/desktop/message_bus.h"

#include "tests/interop/local_server.h"
#include "tests/interop/waiting.h"

#include <QDBusConnectionInterface>
#include <QDBusVariant>
#include <fstream>
#include <stdexcept>

namespace lumbrine::desktop {

namespace {

const QString connectionName = QStringLiteral("the test's");

const char* const busConfiguration = R"(<busconfig>
  <type>session</type>
  <auth>EXTERNAL</auth>
  <listen>unix:path=SOCKET</listen>
  <policy context="default">
    <allow user="*"/>
    <allow own="*"/>
    <allow send_destination="*" eavesdrop="false"/>
    <allow receive_sender="*"/>
  </policy>
</busconfig>
)";

std::unique_ptr<interop::ChildProcess> startBus(const std::filesystem::path& folder) {
    const std::filesystem::path socket = folder / "bus";
    const std::filesystem::path configuration = folder / "bus.conf";
    std::string text = busConfiguration;
    std::ofstream(configuration) << text.replace(text.find("SOCKET"), 6, socket.string());
    auto bus = std::make_unique<interop::ChildProcess>(
        std::vector<std::string>{"dbus-daemon", "--config-file=" + configuration.string(), "--nofork", "--nopidfile"});
    const auto ready = [&] { return interop::isListenedAt(socket); };
    if (!interop::waitUntil([&] { return ready() || !bus->running(); }) || !bus->running())
        throw std::runtime_error("dbus-daemon does not start: " + bus->output());
    return bus;
}

} // namespace

MessageBus::MessageBus()
    : bus(startBus(folder.path)),
      ours(QDBusConnection::connectToBus(QString::fromStdString(address()), connectionName)) {
    if (!ours.isConnected()) throw std::runtime_error("no message bus: " + ours.lastError().message().toStdString());
}

MessageBus::~MessageBus() {
    QDBusConnection::disconnectFromBus(connectionName);
}

std::string MessageBus::address() const {
    return "unix:path=" + (folder.path / "bus").string();
}

void MessageBus::serve(const QString& service, const QString& path, QDBusVirtualObject& object) {
    if (!ours.registerVirtualObject(path, &object, QDBusConnection::SubPath) || !ours.registerService(service))
        throw std::runtime_error("cannot serve " + service.toStdString() + ": " +
                                 ours.lastError().message().toStdString());
}

bool MessageBus::waitUntil(const std::function<bool()>& condition) {
    return interop::waitUntil([&] {
        QCoreApplication::processEvents();
        return condition();
    });
}

QDBusMessage MessageBus::call(const QString& program, const QString& path, const QString& interface,
                              const QString& method, const QVariantList& arguments) const {
    QDBusMessage call = QDBusMessage::createMethodCall(program, path, interface, method);
    call.setArguments(arguments);
    return ours.call(call);
}

QVariant MessageBus::property(const QString& program, const QString& path, const QString& interface,
                              const QString& wanted) const {
    const QDBusMessage reply = call(program, path, QStringLiteral("org.freedesktop.DBus.Properties"),
                                    QStringLiteral("Get"), {interface, wanted});
    return reply.arguments().value(0).value<QDBusVariant>().variant();
}

} // namespace lumbrine::desktop
