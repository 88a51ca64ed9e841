// One receiver for each user: when it is started a second time, the first one shows its window and the second one ends.
#pragma once

#include <QLocalServer>
#include <QString>
#include <functional>
#include <memory>

namespace lumbrine {

// The process that holds the lock on the lock file is the first, and listens on a local socket beside it. Both are in
// the user's runtime folder. The system releases the lock when a process dies, so a crash leaves nothing to clean up.
class SingleInstance {
public:
    // `identifier` names the lock and the socket ("com.tarnwick.lumbrine"). Create it after the QApplication.
    explicit SingleInstance(const QString& identifier);
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    bool isFirst() const { return first; }

    // For the first: sets what to do when another one is started. Starts that happened before this call are answered
    // now.
    void onStartOfAnother(std::function<void()> raise);

    // For the second: asks the first to show itself. False when it does not answer within a few seconds.
    bool handOver();

private:
    void answer();

    const QString socketPath;
    const int lockFile; // -1 when it cannot be created; then every process counts as the first
    const bool first;
    QLocalServer server;
    std::function<void()> callback;
};

// Registers the program on the user's message bus, where desktops can ask the running program to show itself
// (org.freedesktop.Application). Without a bus it does nothing.
class BusPresence {
public:
    BusPresence(const QString& name, std::function<void()> raise);
    ~BusPresence();
    BusPresence(const BusPresence&) = delete;
    BusPresence& operator=(const BusPresence&) = delete;

private:
    class Object;

    const QString name;
    const std::unique_ptr<Object> object;
};

} // namespace lumbrine
