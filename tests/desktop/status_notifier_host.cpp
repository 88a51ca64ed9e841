#include "tests/desktop/status_notifier_host.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <algorithm>

namespace lumbrine::desktop {

namespace {

const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString itemInterface = QStringLiteral("org.kde.StatusNotifierItem");
const QString itemPath = QStringLiteral("/StatusNotifierItem");
const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");
const QString menuInterface = QStringLiteral("com.canonical.dbusmenu");

// A picture of an icon: its width, and four bytes for each pixel, of which the first is how opaque it is.
struct Picture {
    int width = 0;
    QByteArray pixels;
};

std::vector<Picture> picturesIn(const QVariant& value) {
    std::vector<Picture> pictures;
    const auto argument = value.value<QDBusArgument>();
    argument.beginArray();
    while (!argument.atEnd()) {
        Picture picture;
        int height = 0;
        argument.beginStructure();
        argument >> picture.width >> height >> picture.pixels;
        argument.endStructure();
        pictures.push_back(picture);
    }
    argument.endArray();
    return pictures;
}

StatusNotifierHost::MenuEntry entryOf(const QVariant& value) {
    const auto argument = value.value<QDBusArgument>();
    int id = 0;
    QVariantMap properties;
    argument.beginStructure();
    argument >> id >> properties;
    const bool divider = properties.value(QStringLiteral("type")).toString() == QLatin1String("separator");
    return {.id = id,
            .title = divider ? "-" : properties.value(QStringLiteral("label")).toString().toStdString(),
            .enabled = properties.value(QStringLiteral("enabled"), true).toBool(),
            .checked = properties.value(QStringLiteral("toggle-state")).toInt() == 1};
}

} // namespace

// Where programs register their icons.
class StatusNotifierHost::Watcher final : public QDBusVirtualObject {
public:
    QString introspect(const QString&) const override {
        return QStringLiteral("<interface name=\"org.kde.StatusNotifierWatcher\">"
                              "<method name=\"RegisterStatusNotifierItem\">"
                              "<arg type=\"s\" name=\"service\" direction=\"in\"/></method>"
                              "<property name=\"IsStatusNotifierHostRegistered\" type=\"b\" access=\"read\"/>"
                              "</interface>");
    }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& from) override {
        const QVariantList arguments = message.arguments();
        if (message.interface() == watcherName && message.member() == QLatin1String("RegisterStatusNotifierItem")) {
            item = arguments.value(0).toString();
            return from.send(message.createReply());
        }
        if (message.interface() == propertiesInterface && message.member() == QLatin1String("Get") &&
            arguments.value(1) == QLatin1String("IsStatusNotifierHostRegistered"))
            return from.send(message.createReply(QVariant::fromValue(QDBusVariant(true))));
        return false;
    }

    QString item; // the name on the bus of the one that has registered last
};

StatusNotifierHost::StatusNotifierHost(MessageBus& bus) : bus(bus), watcher(std::make_unique<Watcher>()) {}

StatusNotifierHost::~StatusNotifierHost() = default;

void StatusNotifierHost::open() {
    bus.serve(watcherName, QStringLiteral("/StatusNotifierWatcher"), *watcher);
}

bool StatusNotifierHost::hasIcon() const {
    return bus.connection().interface()->isServiceRegistered(watcher->item);
}

QVariant StatusNotifierHost::property(const QString& wanted) const {
    return bus.property(watcher->item, itemPath, itemInterface, wanted);
}

int StatusNotifierHost::opacity() const {
    const std::vector<Picture> pictures = picturesIn(property(QStringLiteral("IconPixmap")));
    const auto largest = std::ranges::max_element(pictures, {}, &Picture::width);
    if (largest == pictures.end()) return 0;
    int strongest = 0;
    for (qsizetype i = 0; i < largest->pixels.size(); i += 4)
        strongest = std::max<int>(strongest, static_cast<std::uint8_t>(largest->pixels[i]));
    return strongest;
}

// Its third part is the title.
std::string StatusNotifierHost::toolTip() const {
    const auto argument = property(QStringLiteral("ToolTip")).value<QDBusArgument>();
    QString icon;
    QString title;
    argument.beginStructure();
    argument >> icon;
    argument.beginArray();
    argument.endArray();
    argument >> title;
    return title.toStdString();
}

void StatusNotifierHost::clickIcon() const {
    bus.call(watcher->item, itemPath, itemInterface, QStringLiteral("Activate"), {0, 0});
}

QDBusMessage StatusNotifierHost::callMenu(const QString& method, const QVariantList& arguments) const {
    const auto path = property(QStringLiteral("Menu")).value<QDBusObjectPath>().path();
    return bus.call(watcher->item, path, menuInterface, method, arguments);
}

std::vector<StatusNotifierHost::MenuEntry> StatusNotifierHost::menu() const {
    const QDBusMessage reply = callMenu(QStringLiteral("GetLayout"), {0, -1, QStringList()});
    const auto root = reply.arguments().value(1).value<QDBusArgument>();
    std::vector<MenuEntry> entries;
    int id = 0;
    QVariantMap properties;
    root.beginStructure();
    root >> id >> properties;
    root.beginArray();
    while (!root.atEnd()) {
        QDBusVariant child;
        root >> child;
        entries.push_back(entryOf(child.variant()));
    }
    return entries;
}

void StatusNotifierHost::choose(const std::string& title) const {
    for (const MenuEntry& entry : menu())
        if (entry.title == title)
            callMenu(QStringLiteral("Event"),
                     {entry.id, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(QString())), 0U});
}

} // namespace lumbrine::desktop
