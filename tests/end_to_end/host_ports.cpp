#include "tests/end_to_end/host_ports.h"

#include "tests/interop/waiting.h"

#include <jack/jack.h>
#include <jack/midiport.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <stdexcept>
#include <utility>

namespace lumbrine::end_to_end {

namespace {

// The full name of the port that has this short name; empty when there is none.
std::string portNamed(jack_client_t* client, const std::string& shortName, unsigned long direction) {
    const std::unique_ptr<const char*[], decltype(&::jack_free)> found(
        ::jack_get_ports(client, nullptr, JACK_DEFAULT_MIDI_TYPE, direction), &::jack_free);
    for (std::size_t i = 0; found && found[i] != nullptr; ++i) {
        const std::string name = found[i];
        if (name.substr(name.find(':') + 1) == shortName) return name;
    }
    return {};
}

bool connected(int status) {
    return status == 0 || status == EEXIST;
}

bool write(void* buffer, const Bytes& event) {
    return event.size() <= ::jack_midi_max_event_size(buffer) &&
           ::jack_midi_event_write(buffer, 0, event.data(), event.size()) == 0;
}

} // namespace

HostPorts::HostPorts(const std::string& portName) {
    client = ::jack_client_open(("host of " + portName).c_str(), JackNoStartServer, nullptr);
    if (client == nullptr) throw std::runtime_error("no JACK client");
    input = ::jack_port_register(client, "from surface", JACK_DEFAULT_MIDI_TYPE, JackPortIsInput, 0);
    output = ::jack_port_register(client, "to surface", JACK_DEFAULT_MIDI_TYPE, JackPortIsOutput, 0);
    ::jack_set_process_callback(client, &HostPorts::process, this);
    if (input == nullptr || output == nullptr || ::jack_activate(client) != 0 ||
        !interop::waitUntil([&] { return connectTo(portName); }) || !letCyclesPass()) {
        ::jack_client_close(client);
        throw std::runtime_error("no connection to the ports " + portName);
    }
}

HostPorts::~HostPorts() {
    ::jack_client_close(client);
}

bool HostPorts::connectTo(const std::string& portName) {
    const std::string sender = portNamed(client, portName, JackPortIsOutput);
    const std::string destination = portNamed(client, portName, JackPortIsInput);
    return !sender.empty() && !destination.empty() &&
           connected(::jack_connect(client, sender.c_str(), ::jack_port_name(input))) &&
           connected(::jack_connect(client, ::jack_port_name(output), destination.c_str()));
}

// The server takes a connection into its next cycle or the one after: what is sent before that is lost.
bool HostPorts::letCyclesPass() {
    const int end = cycles + 4;
    return interop::waitUntil([&] { return cycles >= end; });
}

int HostPorts::process(std::uint32_t frames, void* self) {
    auto& ports = *static_cast<HostPorts*>(self);
    ++ports.cycles;
    const std::lock_guard lock(ports.mutex);
    ports.take(::jack_port_get_buffer(ports.input, frames));
    ports.give(::jack_port_get_buffer(ports.output, frames));
    return 0;
}

void HostPorts::take(void* buffer) {
    const auto now = std::chrono::steady_clock::now();
    const std::uint32_t count = ::jack_midi_get_event_count(buffer);
    for (std::uint32_t i = 0; i < count; ++i) {
        jack_midi_event_t event{};
        if (::jack_midi_event_get(&event, buffer, i) == 0)
            received.push_back({now, Bytes(event.buffer, event.buffer + event.size)});
    }
}

void HostPorts::give(void* buffer) {
    ::jack_midi_clear_buffer(buffer);
    while (!outgoing.empty() && write(buffer, outgoing.front()))
        outgoing.pop_front();
    while (source && outgoing.empty()) {
        const Bytes event = source();
        if (!write(buffer, event)) break; // it is gone; there is more where it came from
        floodedBytes += event.size();
    }
}

void HostPorts::send(ByteView event) {
    const std::lock_guard lock(mutex);
    outgoing.emplace_back(event.begin(), event.end());
}

void HostPorts::flood(std::function<Bytes()> next) {
    const std::lock_guard lock(mutex);
    source = std::move(next);
}

std::vector<HostPorts::Event> HostPorts::events() const {
    const std::lock_guard lock(mutex);
    return received;
}

void HostPorts::clear() {
    const std::lock_guard lock(mutex);
    received.clear();
}

std::vector<HostPorts::Event> HostPorts::waitFor(const std::vector<Bytes>& sequence) const {
    std::vector<Event> found;
    interop::waitUntil([&] {
        const std::lock_guard lock(mutex);
        const auto place = std::ranges::search(received, sequence, {}, &Event::bytes);
        found.assign(place.begin(), place.end());
        return !found.empty();
    });
    return found;
}

} // namespace lumbrine::end_to_end
