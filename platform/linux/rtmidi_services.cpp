#include "platform/linux/rtmidi_services.h"

#include "platform/linux/midi_endpoint_numbers.h"
#include "platform/linux/rtmidi_guard.h"

#include <unistd.h>

#include <utility>

namespace lumbrine {

class RtMidiServices::Source {
public:
    Source(Runtime& runtime, RtMidiSystem system, const std::string& client)
        : mutex(runtime, Nesting::inBackEnd), out(apiOf(system), client) {
        errors.listenTo(out);
    }

    MIDIStatus open(const std::string& name) {
        out.openVirtualPort(name);
        return errors.take();
    }

    void send(ByteView message) {
        const Lock lock(mutex);
        out.sendMessage(message.data(), message.size());
    }

private:
    RtMidiErrors errors;
    Mutex mutex; // RtMidi encodes into a buffer inside the object
    RtMidiOut out;
};

class RtMidiServices::Destination {
public:
    Destination(RtMidiSystem system, const std::string& client, MIDIReadBlock read)
        : read(std::move(read)), in(apiOf(system), client) {
        errors.listenTo(in);
        in.ignoreTypes(false, false, false);
        in.setCallback(
            [](double /*time*/, std::vector<unsigned char>* message, void* self) {
                if (message != nullptr && !message->empty()) static_cast<Destination*>(self)->read(*message);
            },
            this);
    }

    MIDIStatus open(const std::string& name) {
        in.openVirtualPort(name);
        return errors.take();
    }

private:
    const MIDIReadBlock read;
    RtMidiErrors errors;
    RtMidiIn in;
};

RtMidiServices::RtMidiServices(Runtime& runtime, RtMidiSystem system) : runtime(runtime), system(system) {}

RtMidiServices::~RtMidiServices() = default;

bool RtMidiServices::alsaAnswers() {
    // Checked first, because both libraries write to standard error when there is no sequencer.
    if (::access("/dev/snd/seq", R_OK | W_OK) != 0) return false;
    return guarded([] { const RtMidiOut probe(RtMidi::LINUX_ALSA, "lumbrine-probe"); }) == 0;
}

MIDIStatus RtMidiServices::createClient(const std::string& name, MIDIClientRef& client) {
    if (system == RtMidiSystem::alsa && !alsaAnswers()) return -ENODEV;
    clients.push_back(name);
    client = static_cast<MIDIClientRef>(clients.size());
    return 0;
}

MIDIStatus RtMidiServices::createSource(MIDIClientRef client, const std::string& name, MIDIEndpointRef& source) {
    if (client == 0 || client > clients.size()) return -EINVAL;
    MIDIStatus opened = 0;
    const MIDIStatus made = guarded([&] {
        auto port = std::make_unique<Source>(runtime, system, clients[client - 1]);
        opened = port->open(name);
        if (opened == 0) sources.push_back(std::move(port));
    });
    if (made != 0 || opened != 0) return made != 0 ? made : opened;
    source = static_cast<MIDIEndpointRef>(sources.size());
    return 0;
}

MIDIStatus RtMidiServices::createDestination(MIDIClientRef client, const std::string& name, MIDIReadBlock read,
                                             MIDIEndpointRef& destination) {
    if (client == 0 || client > clients.size()) return -EINVAL;
    MIDIStatus opened = 0;
    const MIDIStatus made = guarded([&] {
        auto port = std::make_unique<Destination>(system, clients[client - 1], std::move(read));
        opened = port->open(name);
        if (opened == 0) destinations.push_back(std::move(port));
    });
    if (made != 0 || opened != 0) return made != 0 ? made : opened;
    destination = firstDestination + static_cast<MIDIEndpointRef>(destinations.size()) - 1;
    return 0;
}

MIDIStatus RtMidiServices::setUniqueID(MIDIEndpointRef /*endpoint*/, std::int32_t /*uniqueID*/) {
    return 0;
}

MIDIStatus RtMidiServices::received(MIDIEndpointRef source, ByteView message) {
    if (source == 0 || source > sources.size()) return -EINVAL;
    Source& port = *sources[source - 1];
    return guarded([&] { port.send(message); });
}

} // namespace lumbrine
