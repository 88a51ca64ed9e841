#include "platform/linux/rtmidi_connections.h"

#include "platform/linux/bell.h"
#include "platform/linux/rtmidi_guard.h"
#include "platform/linux/rtmidi_names.h"

#include <atomic>
#include <optional>
#include <utility>

namespace lumbrine {

namespace {

constexpr Duration betweenLooks = seconds(1);

std::optional<unsigned> findPort(RtMidi& object, const std::string& shortName) {
    const unsigned count = object.getPortCount();
    for (unsigned i = 0; i < count; ++i)
        if (hasShortName(object.getPortName(i), shortName)) return i;
    return std::nullopt;
}

class RtMidiConnection final : public MIDIConnection {
public:
    // Throws RtMidiError.
    RtMidiConnection(Runtime& runtime, RtMidiSystem system, std::string name, std::function<void(ByteView)> incoming)
        : name(std::move(name)), incoming(std::move(incoming)), mutex(runtime),
          in(apiOf(system), this->name + " host in"), out(apiOf(system), this->name + " host out") {
        errors.listenTo(in);
        errors.listenTo(out);
        in.ignoreTypes(false, false, false);
        in.setCallback(
            [](double /*time*/, std::vector<unsigned char>* message, void* self) {
                if (message != nullptr) static_cast<RtMidiConnection*>(self)->incoming(*message);
            },
            this);
        thread = runtime.startThread("midi connect", [this] {
            while (!stopping) {
                look();
                bell.waitFor(betweenLooks);
            }
        });
    }

    ~RtMidiConnection() override {
        stopping = true;
        bell.ring();
        thread.reset();
    }

    void send(ByteView message) override {
        const Lock lock(mutex);
        if (isConnected && !message.empty()) out.sendMessage(message.data(), message.size());
    }

    bool connected() const override { return isConnected; }

private:
    void look() {
        const auto source = findPort(in, name);
        const auto destination = findPort(out, name);
        const bool both = source && destination;
        const Lock lock(mutex);
        if (both == isConnected) return;
        if (both) {
            in.openPort(*source, name + " in");
            out.openPort(*destination, name + " out");
        } else {
            in.closePort();
            out.closePort();
        }
        isConnected = both && errors.take() == 0;
    }

    const std::string name;
    const std::function<void(ByteView)> incoming;
    RtMidiErrors errors;
    Mutex mutex; // RtMidi objects are not thread-safe
    RtMidiIn in;
    RtMidiOut out;
    std::atomic<bool> isConnected{false};
    std::atomic<bool> stopping{false};
    Bell bell;
    std::unique_ptr<Thread> thread;
};

} // namespace

RtMidiConnections::RtMidiConnections(Runtime& runtime, RtMidiSystem system) : runtime(runtime), system(system) {}

std::unique_ptr<MIDIConnection> RtMidiConnections::connect(const std::string& portName,
                                                           std::function<void(ByteView)> incoming) {
    if (system == RtMidiSystem::alsa && !RtMidiServices::alsaAnswers()) return nullptr;
    std::unique_ptr<MIDIConnection> connection;
    guarded([&] { connection = std::make_unique<RtMidiConnection>(runtime, system, portName, std::move(incoming)); });
    return connection;
}

} // namespace lumbrine
