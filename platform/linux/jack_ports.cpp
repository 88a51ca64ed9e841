#include "platform/linux/jack_ports.h"

#include <jack/jack.h>
#include <jack/midiport.h>

#include <utility>

namespace lumbrine {

bool JackPort::registerWith(jack_client_t* client) {
    forget();
    port = jack_port_register(client, name.c_str(), JACK_DEFAULT_MIDI_TYPE, flags, 0);
    return port != nullptr;
}

void JackPort::lookAtConnections() {
    connected.store(jack_port_connected(port) != 0, std::memory_order_relaxed);
}

std::string JackPort::fullName() const {
    return jack_port_name(port);
}

bool JackPort::isConnectedTo(const std::string& otherFullName) const {
    return jack_port_connected_to(port, otherFullName.c_str()) != 0;
}

JackOutput::JackOutput(Runtime& runtime, std::string portName, const std::atomic<bool>& serverIsThere)
    : JackPort(std::move(portName), JackPortIsOutput), serverIsThere(serverIsThere), mutex(runtime, Nesting::inBackEnd),
      ring(jackPortCapacity) {}

bool JackOutput::send(ByteView event) {
    const Lock lock(mutex);
    if (!serverIsThere || event.empty() || ring.push(event)) return true;
    ++droppedCount;
    return false;
}

bool JackOutput::process(jack_nframes_t frames) {
    lookAtConnections();
    void* buffer = jack_port_get_buffer(port, frames);
    jack_midi_clear_buffer(buffer);
    const std::size_t largest = jack_midi_max_event_size(buffer);
    while (const std::size_t size = ring.nextSize()) {
        if (size > largest) { // does not fit an empty buffer, so it would block the ring for ever
            ring.drop();
            ++droppedCount;
            continue;
        }
        if (size > jack_midi_max_event_size(buffer)) break; // this cycle is full; the event waits for the next
        jack_midi_data_t* place = jack_midi_event_reserve(buffer, 0, size);
        if (place == nullptr) break;
        ring.pop({place, size});
    }
    return false;
}

void JackOutput::forget() {
    const Lock lock(mutex);
    ring.clear();
}

JackInput::JackInput(std::string portName, std::function<void(ByteView)> read, std::function<void()> isBack)
    : JackPort(std::move(portName), JackPortIsInput), read(std::move(read)), isBack(std::move(isBack)),
      ring(jackPortCapacity) {}

bool JackInput::process(jack_nframes_t frames) {
    lookAtConnections();
    void* buffer = jack_port_get_buffer(port, frames);
    const std::uint32_t count = jack_midi_get_event_count(buffer);
    for (std::uint32_t i = 0; i < count; ++i) {
        jack_midi_event_t event{};
        if (jack_midi_event_get(&event, buffer, i) != 0 || event.size == 0) continue;
        if (!ring.push({event.buffer, event.size})) ++droppedCount;
    }
    return count > 0;
}

void JackInput::deliver(std::span<std::uint8_t> scratch) {
    if (returned.exchange(false) && isBack) isBack();
    while (const std::size_t size = ring.nextSize()) {
        const std::span<std::uint8_t> event = scratch.first(size);
        ring.pop(event);
        read(event);
    }
}

void JackInput::forget() {
    if (std::exchange(registeredBefore, true)) returned = true;
}

} // namespace lumbrine
