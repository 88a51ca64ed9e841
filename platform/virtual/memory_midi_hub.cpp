#include "platform/virtual/memory_midi_hub.h"

#include <utility>

namespace lumbrine {

namespace {

constexpr MIDIStatus invalidClient = -10830;
constexpr MIDIStatus objectNotFound = -10842;

} // namespace

void MemoryMIDI::Hub::fail(Call call, MIDIStatus status) {
    const Lock guard(lock);
    failures[static_cast<std::size_t>(call)] = status;
}

MIDIStatus MemoryMIDI::Hub::refusal(Call call, MIDIClientRef client) const {
    if (const MIDIStatus status = failures[static_cast<std::size_t>(call)]; status != 0) return status;
    return client == 0 || client > clients ? invalidClient : 0;
}

// Creates the queues at the first use of a name. They live until `close`.
MemoryMIDI::Hub::Pair& MemoryMIDI::Hub::pairNamed(const std::string& name) {
    Pair& pair = pairs[name];
    if (!pair.outward && !closed) {
        pair.outward = runtime.serialQueue("midi out " + name, Priority::userInitiated);
        pair.inward = runtime.serialQueue("midi in " + name, Priority::userInitiated);
    }
    return pair;
}

MIDIStatus MemoryMIDI::Hub::createClient(MIDIClientRef& client) {
    const Lock guard(lock);
    if (const MIDIStatus status = failures[static_cast<std::size_t>(Call::createClient)]; status != 0) return status;
    client = ++clients;
    return 0;
}

MIDIStatus MemoryMIDI::Hub::createSource(MIDIClientRef client, const std::string& name, MIDIEndpointRef& source) {
    const Lock guard(lock);
    if (const MIDIStatus status = refusal(Call::createSource, client); status != 0) return status;
    source = ++lastEndpoint;
    endpoints[source] = name;
    pairNamed(name).source = source;
    return 0;
}

MIDIStatus MemoryMIDI::Hub::createDestination(MIDIClientRef client, const std::string& name, MIDIReadBlock read,
                                              MIDIEndpointRef& destination) {
    const Lock guard(lock);
    if (const MIDIStatus status = refusal(Call::createDestination, client); status != 0) return status;
    destination = ++lastEndpoint;
    endpoints[destination] = name;
    Pair& pair = pairNamed(name);
    pair.destination = destination;
    pair.read = std::make_shared<const MIDIReadBlock>(std::move(read));
    return 0;
}

MIDIStatus MemoryMIDI::Hub::setUniqueID(MIDIEndpointRef endpoint) {
    const Lock guard(lock);
    if (const MIDIStatus status = failures[static_cast<std::size_t>(Call::setUniqueID)]; status != 0) return status;
    return endpoints.contains(endpoint) ? 0 : objectNotFound;
}

void MemoryMIDI::Hub::post(const std::shared_ptr<SerialQueue>& queue, Duration latency, Task task) {
    if (!queue) return;
    if (latency > Duration::zero()) {
        queue->postAfter(latency, std::move(task));
    } else {
        queue->post(std::move(task));
    }
}

MIDIStatus MemoryMIDI::Hub::fromSource(MIDIEndpointRef source, ByteView message) {
    std::shared_ptr<SerialQueue> queue;
    const std::string* name = nullptr; // stays valid: endpoints are never removed from the map
    {
        const Lock guard(lock);
        const auto endpoint = endpoints.find(source);
        if (endpoint == endpoints.end()) return objectNotFound;
        name = &endpoint->second;
        queue = pairNamed(*name).outward;
    }
    post(queue, latency, [this, name, bytes = Bytes(message.begin(), message.end())] { deliverOutward(*name, bytes); });
    return 0;
}

void MemoryMIDI::Hub::deliverOutward(const std::string& name, ByteView message) {
    std::vector<std::shared_ptr<Listener>> listeners;
    {
        const Lock guard(lock);
        const Pair& pair = pairs[name];
        if (pair.source == 0 || pair.destination == 0) return;
        listeners = pair.listeners;
    }
    for (const auto& listener : listeners) {
        {
            const Lock guard(lock);
            if (!listener->wanted) continue;
            listener->inCallback = true;
        }
        if (listener->incoming) listener->incoming(message);
        const Lock guard(lock);
        listener->inCallback = false;
    }
}

void MemoryMIDI::Hub::toDestination(const std::string& name, ByteView message) {
    std::shared_ptr<SerialQueue> queue;
    const std::string* key = nullptr;
    {
        const Lock guard(lock);
        const auto pair = pairs.find(name);
        if (pair == pairs.end() || pair->second.source == 0 || pair->second.destination == 0) return;
        key = &pair->first;
        queue = pair->second.inward;
    }
    post(queue, latency, [this, key, bytes = Bytes(message.begin(), message.end())] { deliverInward(*key, bytes); });
}

void MemoryMIDI::Hub::deliverInward(const std::string& name, ByteView message) {
    std::shared_ptr<const MIDIReadBlock> read;
    {
        const Lock guard(lock);
        read = pairs[name].read;
    }
    if (read && *read && !message.empty()) (*read)(message);
}

bool MemoryMIDI::Hub::complete(const std::string& name) {
    const Lock guard(lock);
    const auto pair = pairs.find(name);
    return !closed && pair != pairs.end() && pair->second.source != 0 && pair->second.destination != 0;
}

std::shared_ptr<MemoryMIDI::Hub::Listener> MemoryMIDI::Hub::listen(const std::string& name,
                                                                   std::function<void(ByteView)> incoming) {
    auto listener = std::make_shared<Listener>();
    listener->incoming = std::move(incoming);
    const Lock guard(lock);
    pairNamed(name).listeners.push_back(listener);
    return listener;
}

void MemoryMIDI::Hub::stopListening(const std::string& name, const std::shared_ptr<Listener>& listener) {
    for (;;) {
        {
            const Lock guard(lock);
            listener->wanted = false;
            std::erase(pairs[name].listeners, listener);
            if (!listener->inCallback) return;
        }
        // The callback runs for a moment only. Waiting for it on a condition would need a lock across the callback.
        runtime.sleepFor(std::chrono::microseconds(100));
    }
}

void MemoryMIDI::Hub::close() {
    // Declared before the lock, so that the queues are destroyed, and their jobs waited for, after it is released.
    std::vector<std::shared_ptr<SerialQueue>> ending;
    const Lock guard(lock);
    closed = true;
    for (auto& [name, pair] : pairs) {
        ending.push_back(std::move(pair.outward));
        ending.push_back(std::move(pair.inward));
    }
}

} // namespace lumbrine
