#include "platform/virtual/memory_midi.h"

#include "platform/virtual/memory_midi_hub.h"

#include <utility>

namespace lumbrine {

class MemoryMIDI::Connection final : public MIDIConnection {
public:
    Connection(std::shared_ptr<Hub> hub, std::string name, std::function<void(ByteView)> incoming)
        : hub(std::move(hub)), name(std::move(name)), listener(this->hub->listen(this->name, std::move(incoming))) {}

    ~Connection() override { hub->stopListening(name, listener); }

    void send(ByteView message) override { hub->toDestination(name, message); }
    bool connected() const override { return hub->complete(name); }

private:
    const std::shared_ptr<Hub> hub;
    const std::string name;
    const std::shared_ptr<Hub::Listener> listener;
};

MemoryMIDI::MemoryMIDI(Runtime& runtime, Duration latency) : hub(std::make_shared<Hub>(runtime, latency)) {}

MemoryMIDI::~MemoryMIDI() {
    hub->close();
}

void MemoryMIDI::fail(Call call, MIDIStatus status) {
    hub->fail(call, status);
}

MIDIStatus MemoryMIDI::createClient(const std::string&, MIDIClientRef& client) {
    return hub->createClient(client);
}

MIDIStatus MemoryMIDI::createSource(MIDIClientRef client, const std::string& name, MIDIEndpointRef& source) {
    return hub->createSource(client, name, source);
}

MIDIStatus MemoryMIDI::createDestination(MIDIClientRef client, const std::string& name, MIDIReadBlock read,
                                         MIDIEndpointRef& destination) {
    return hub->createDestination(client, name, std::move(read), destination);
}

MIDIStatus MemoryMIDI::setUniqueID(MIDIEndpointRef endpoint, std::int32_t) {
    return hub->setUniqueID(endpoint);
}

MIDIStatus MemoryMIDI::received(MIDIEndpointRef source, ByteView message) {
    return hub->fromSource(source, message);
}

std::unique_ptr<MIDIConnection> MemoryMIDI::connect(const std::string& portName,
                                                    std::function<void(ByteView)> incoming) {
    return std::make_unique<Connection>(hub, portName, std::move(incoming));
}

} // namespace lumbrine
