#include "platform/qt/status_area.h"

#include <xcb/xcb.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QTimer>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace lumbrine {

namespace {

constexpr int lookEveryMs = 200;
constexpr int answerWithinMs = 500;

template <typename Reply>
using Answer = std::unique_ptr<Reply, decltype(&std::free)>;

// Newer desktops offer it on the message bus (StatusNotifierWatcher).
bool isOnTheBus() {
    const QString watcher = QStringLiteral("org.kde.StatusNotifierWatcher");
    QDBusMessage question =
        QDBusMessage::createMethodCall(watcher, QStringLiteral("/StatusNotifierWatcher"),
                                       QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question.setArguments({watcher, QStringLiteral("IsStatusNotifierHostRegistered")});
    question.setAutoStartService(false);
    const QDBusMessage answer = QDBusConnection::sessionBus().call(question, QDBus::Block, answerWithinMs);
    return answer.arguments().value(0).value<QDBusVariant>().variant().toBool();
}

// Older ones have a window that holds the icons: the owner of a selection of the X server.
bool isAWindow() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 == nullptr) return false;
    constexpr std::string_view name = "_NET_SYSTEM_TRAY_S0";
    xcb_connection_t* const server = x11->connection();
    const Answer<xcb_intern_atom_reply_t> atom(
        xcb_intern_atom_reply(server, xcb_intern_atom(server, 0, name.size(), name.data()), nullptr), &std::free);
    if (!atom) return false;
    const Answer<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(server, xcb_get_selection_owner(server, atom->atom), nullptr), &std::free);
    return owner && owner->owner != XCB_WINDOW_NONE;
}

bool isThere() {
    return isAWindow() || isOnTheBus();
}

} // namespace

class StatusAreaWait::Looks {
public:
    explicit Looks(StatusAreaWait& whoWaits) {
        began.start();
        QObject::connect(timer, &QTimer::timeout, timer, [this, &whoWaits] {
            if (began.hasExpired(longestMs) || isThere()) whoWaits.end();
        });
        timer->start(lookEveryMs);
    }

    // The timer's own slot may destroy this object, so the timer is deleted later.
    ~Looks() {
        timer->stop();
        timer->deleteLater();
    }

    Looks(const Looks&) = delete;
    Looks& operator=(const Looks&) = delete;

private:
    QElapsedTimer began;
    QTimer* const timer = new QTimer;
};

StatusAreaWait::StatusAreaWait(std::function<void()> callback) : callback(std::move(callback)) {
    if (!QDBusConnection::sessionBus().isConnected() || isThere()) {
        end();
    } else {
        looks = std::make_unique<Looks>(*this);
    }
}

StatusAreaWait::~StatusAreaWait() = default;

void StatusAreaWait::end() {
    looks.reset();
    if (const auto call = std::exchange(callback, nullptr)) call();
}

} // namespace lumbrine
