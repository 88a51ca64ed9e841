#include "platform/linux/jack_midi_services.h"

#include "platform/linux/midi_endpoint_numbers.h"

#include <jack/types.h>

#include <cerrno>
#include <utility>

namespace lumbrine {

JackMIDIServices::JackMIDIServices(Runtime& runtime, std::shared_ptr<JackServer> server)
    : runtime(runtime), server(std::move(server)) {}

MIDIStatus JackMIDIServices::createClient(const std::string& name, MIDIClientRef& client) {
    if (!sources) {
        JackClient::Pointer newSources = JackClient::make(runtime, *server, name);
        JackClient::Pointer newDestinations = JackClient::make(runtime, *server, name);
        if (const MIDIStatus status = newSources->start(); status != 0) return status;
        if (const MIDIStatus status = newDestinations->start(); status != 0) return status;
        sources = std::move(newSources);
        destinations = std::move(newDestinations);
    }
    client = ++clientCount;
    return 0;
}

MIDIStatus JackMIDIServices::createSource(MIDIClientRef client, const std::string& name, MIDIEndpointRef& source) {
    if (client == 0 || client > clientCount) return -EINVAL;
    JackOutput* const output = sources->addOutput(name);
    if (output == nullptr) return JackFailure;
    source = ++sourceCount;
    outputs[source] = output;
    return 0;
}

MIDIStatus JackMIDIServices::createDestination(MIDIClientRef client, const std::string& name, MIDIReadBlock read,
                                               MIDIEndpointRef& destination) {
    if (client == 0 || client > clientCount) return -EINVAL;
    JackInput* const input = destinations->addInput(name, std::move(read), returns[client]);
    if (input == nullptr) return JackFailure;
    inputs[destinationCount] = input;
    destination = firstDestination + destinationCount++;
    return 0;
}

std::optional<bool> JackMIDIServices::isConnected(MIDIEndpointRef endpoint) const {
    const JackPort* port = nullptr;
    if (endpoint < outputs.size()) {
        port = outputs[endpoint].load();
    } else if (endpoint >= firstDestination && endpoint - firstDestination < inputs.size()) {
        port = inputs[endpoint - firstDestination].load();
    }
    if (port == nullptr) return std::nullopt;
    return port->isConnected();
}

void JackMIDIServices::onReturn(MIDIClientRef client, std::function<void()> back) {
    returns[client] = std::move(back);
}

MIDIStatus JackMIDIServices::setUniqueID(MIDIEndpointRef /*endpoint*/, std::int32_t /*uniqueID*/) {
    return 0;
}

MIDIStatus JackMIDIServices::received(MIDIEndpointRef source, ByteView message) {
    JackOutput* const output = source < outputs.size() ? outputs[source].load() : nullptr;
    if (output == nullptr) return -EINVAL;
    return output->send(message) ? 0 : -EAGAIN;
}

std::uint64_t JackMIDIServices::dropped() const {
    return sources ? sources->dropped() + destinations->dropped() : 0;
}

} // namespace lumbrine
