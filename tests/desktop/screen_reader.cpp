#include "tests/desktop/screen_reader.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <regex>
#include <stdexcept>

namespace lumbrine::desktop {

// An object of a program on the bus.
struct Reference {
    QString program;
    QDBusObjectPath path;
};

QDBusArgument& operator<<(QDBusArgument& argument, const Reference& reference) {
    argument.beginStructure();
    argument << reference.program << reference.path;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, Reference& reference) {
    argument.beginStructure();
    argument >> reference.program >> reference.path;
    argument.endStructure();
    return argument;
}

// Who listens for events, and for which.
struct Listening {
    QString listener;
    QString event;
};

QDBusArgument& operator<<(QDBusArgument& argument, const Listening& listening) {
    argument.beginStructure();
    argument << listening.listener << listening.event;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, Listening& listening) {
    argument.beginStructure();
    argument >> listening.listener >> listening.event;
    argument.endStructure();
    return argument;
}

namespace {

const QString busService = QStringLiteral("org.a11y.Bus");
const QString registryService = QStringLiteral("org.a11y.atspi.Registry");
const QString rootPath = QStringLiteral("/org/a11y/atspi/accessible/root");
const QString accessible = QStringLiteral("org.a11y.atspi.Accessible");
const QString valued = QStringLiteral("org.a11y.atspi.Value");

// Of AT-SPI's list.
constexpr unsigned focusableState = 11;
constexpr unsigned selectedState = 23;
constexpr unsigned showingState = 25;

} // namespace

// Stands for both services that a program looks for: the one that leads to the bus of the readers, which is this bus,
// and the one that programs register with there.
class ScreenReader::Services final : public QDBusVirtualObject {
public:
    explicit Services(const std::string& address) : address(QString::fromStdString(address)) {
        qDBusRegisterMetaType<Reference>();
        qDBusRegisterMetaType<QList<Reference>>();
        qDBusRegisterMetaType<Listening>();
        qDBusRegisterMetaType<QList<Listening>>();
    }

    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& from) override {
        const QString method = message.member();
        const auto answer = [&](const QVariant& value) { return from.send(message.createReply(value)); };
        if (method == QLatin1String("GetAddress")) return answer(address);
        if (message.interface() == QLatin1String("org.freedesktop.DBus.Properties") &&
            method == QLatin1String("Get")) // whether somebody reads
            return answer(QVariant::fromValue(QDBusVariant(true)));
        if (method == QLatin1String("Embed")) {
            program = message.service();
            return answer(QVariant::fromValue(Reference{from.baseService(), QDBusObjectPath(rootPath)}));
        }
        if (method == QLatin1String("GetRegisteredEvents"))
            return answer(
                QVariant::fromValue(QList<Listening>{{from.baseService(), QStringLiteral("Object:StateChanged")}}));
        return false;
    }

    QString program; // the name on the bus of the one that has registered last

private:
    const QString address;
};

ScreenReader::ScreenReader(MessageBus& bus)
    : bus(bus), services(std::make_unique<Services>(bus.address())),
      monitor({"dbus-monitor", "--address", bus.address(),
               "type='signal',interface='org.a11y.atspi.Event.Object',member='StateChanged'"}) {
    if (!bus.waitUntil([this] { return !monitor.output().empty(); }))
        throw std::runtime_error("dbus-monitor does not start");
    bus.serve(busService, QStringLiteral("/org/a11y/bus"), *services);
    bus.serve(registryService, QStringLiteral("/org/a11y/atspi"), *services);
}

ScreenReader::~ScreenReader() = default;

bool ScreenReader::knowsAProgram() const {
    return !services->program.isEmpty();
}

Element ScreenReader::elementAt(const QString& path) const {
    const QString& program = services->program;
    const auto text = [&](const QString& name) {
        return bus.property(program, path, accessible, name).toString().toStdString();
    };
    Element element;
    element.role = bus.call(program, path, accessible, QStringLiteral("GetRoleName"))
                       .arguments()
                       .value(0)
                       .toString()
                       .toStdString();
    element.name = text(QStringLiteral("Name"));
    element.description = text(QStringLiteral("Description"));
    if (element.role == "slider") {
        const QVariant value = bus.property(program, path, valued, QStringLiteral("CurrentValue"));
        if (value.isValid()) element.value = value.toDouble();
    }
    const auto states = qdbus_cast<QList<unsigned>>(
        bus.call(program, path, accessible, QStringLiteral("GetState")).arguments().value(0));
    const auto has = [&](unsigned state) { return !states.isEmpty() && (states[0] >> state & 1U) != 0; };
    element.selected = has(selectedState);
    element.focusable = has(focusableState);
    element.showing = has(showingState);
    return element;
}

void ScreenReader::collect(const QString& path, std::vector<Element>& found) const {
    const QDBusMessage reply = bus.call(services->program, path, accessible, QStringLiteral("GetChildren"));
    for (const Reference& child : qdbus_cast<QList<Reference>>(reply.arguments().value(0))) {
        const Element element = elementAt(child.path.path());
        if (!element.showing) continue;
        found.push_back(element);
        collect(child.path.path(), found);
    }
}

std::vector<Element> ScreenReader::read() const {
    std::vector<Element> found;
    collect(rootPath, found);
    return found;
}

const std::vector<std::string>& ScreenReader::announcements() {
    static const std::regex appeared(R"(path=(\S+); [^\n]*member=StateChanged\n\s*string "showing"\n\s*int32 1)");
    const std::string heard = monitor.output();
    std::size_t number = 0;
    for (std::sregex_iterator at(heard.begin(), heard.end(), appeared), end; at != end; ++at) {
        if (number++ < lookedAt) continue;
        ++lookedAt;
        if (const Element element = elementAt(QString::fromStdString((*at)[1])); element.role == "notification")
            spoken.push_back(element.name);
    }
    return spoken;
}

} // namespace lumbrine::desktop
