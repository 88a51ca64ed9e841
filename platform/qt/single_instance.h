// One receiver for each user: a second start hands over to the first and ends.
#pragma once

#include <QLocalServer>
#include <QString>
#include <functional>
#include <memory>

namespace lumbrine {

// Who holds the lock file is the first and listens at a local socket beside it. Both are in the user's runtime folder;
// the system takes the lock back from a process that has died, so nothing stale is ever in the way.
class SingleInstance {
public:
    // `identifier` names lock and socket ("com.tarnwick.lumbrine"). After the application object is there.
    explicit SingleInstance(const QString& identifier);
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    bool isFirst() const { return first; }

    // In the first: what to do when another one is started. Starts that came before are answered then.
    void onStartOfAnother(std::function<void()> raise);

    // In the second: asks the first to show itself. False when it does not answer within some seconds.
    bool handOver();

private:
    void answer();

    const QString socketPath;
    const int lockFile; // -1 where none can be made: then every one is the first
    const bool first;
    QLocalServer server;
    std::function<void()> callback;
};

// The name on the user's message bus under which desktops find the running program and can ask it to show itself
// (org.freedesktop.Application). Without a bus it does nothing.
class BusPresence {
public:
    BusPresence(const QString& identifier, std::function<void()> raise);
    ~BusPresence();
    BusPresence(const BusPresence&) = delete;
    BusPresence& operator=(const BusPresence&) = delete;

private:
    class Object;

    const QString name;
    const std::unique_ptr<Object> object;
};

} // namespace lumbrine
