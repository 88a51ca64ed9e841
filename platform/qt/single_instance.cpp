#include "platform/qt/single_instance.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QDeadlineTimer>
#include <QDir>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QThread>
#include <utility>

namespace lumbrine {

namespace {

constexpr int patienceMs = 3000;
const QByteArray raiseRequest("show\n");
const QByteArray raiseAnswer("shown\n");

// In the runtime folder. Without one, in the folder for temporary files; users share it, so the name includes the user.
QString pathFor(const QString& identifier) {
    const QString runtimeFolder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (!runtimeFolder.isEmpty()) return runtimeFolder + "/" + identifier;
    return QDir::tempPath() + "/" + identifier + "-" + qEnvironmentVariable("USER", QStringLiteral("user"));
}

int openLock(const QString& path) {
    return ::open(path.toLocal8Bit().constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
}

} // namespace

SingleInstance::SingleInstance(const QString& identifier)
    : socketPath(pathFor(identifier)), lockFile(openLock(socketPath + ".lock")),
      first(lockFile < 0 || ::flock(lockFile, LOCK_EX | LOCK_NB) == 0) {
    if (!first) return;
    QLocalServer::removeServer(socketPath);
    server.setSocketOptions(QLocalServer::UserAccessOption);
    server.listen(socketPath);
}

SingleInstance::~SingleInstance() {
    if (lockFile >= 0) ::close(lockFile);
}

void SingleInstance::onStartOfAnother(std::function<void()> raise) {
    callback = std::move(raise);
    QObject::connect(&server, &QLocalServer::newConnection, &server, [this] { answer(); });
    answer();
}

void SingleInstance::answer() {
    while (QLocalSocket* other = server.nextPendingConnection()) {
        QObject::connect(other, &QLocalSocket::disconnected, other, &QObject::deleteLater);
        const auto read = [this, other] {
            if (other->bytesAvailable() < raiseRequest.size()) return;
            if (other->readAll() != raiseRequest) return other->abort();
            callback();
            other->write(raiseAnswer);
            other->disconnectFromServer();
        };
        QObject::connect(other, &QLocalSocket::readyRead, other, read);
        read();
    }
}

bool SingleInstance::handOver() {
    QLocalSocket socket;
    const QDeadlineTimer limit(patienceMs);
    for (;;) { // retried, because the first may hold the lock already and not listen yet
        socket.connectToServer(socketPath);
        if (socket.waitForConnected(patienceMs)) break;
        if (limit.hasExpired()) return false;
        QThread::msleep(20);
    }
    socket.write(raiseRequest);
    while (socket.bytesAvailable() < raiseAnswer.size())
        if (!socket.waitForReadyRead(patienceMs)) return false;
    return socket.readAll() == raiseAnswer;
}

// ---- BusPresence

class BusPresence::Object final : public QDBusVirtualObject {
public:
    explicit Object(std::function<void()> callback) : callback(std::move(callback)) {}

    QString introspect(const QString&) const override {
        return QStringLiteral("<interface name=\"org.freedesktop.Application\">"
                              "<method name=\"Activate\">"
                              "<arg type=\"a{sv}\" name=\"platform_data\" direction=\"in\"/>"
                              "</method></interface>");
    }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.interface() != QLatin1String("org.freedesktop.Application") ||
            message.member() != QLatin1String("Activate"))
            return false;
        callback();
        connection.send(message.createReply());
        return true;
    }

private:
    const std::function<void()> callback;
};

BusPresence::BusPresence(const QString& name, std::function<void()> raise)
    : name(name), object(std::make_unique<Object>(std::move(raise))) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return;
    bus.registerVirtualObject("/" + QString(name).replace('.', '/'), object.get());
    bus.registerService(name);
}

BusPresence::~BusPresence() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return;
    bus.unregisterService(name);
    bus.unregisterObject("/" + QString(name).replace('.', '/'));
}

} // namespace lumbrine
