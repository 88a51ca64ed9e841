#include "platform/recorded/recorded_midi.h"

#include <algorithm>
#include <utility>

namespace lumbrine {

using blackbox::bytesOf;
using blackbox::Kind;
using blackbox::PortEvent;
using blackbox::textBytes;

MIDIStatus RecordedMIDI::createClient(const std::string& name, MIDIClientRef& client) {
    const MIDIStatus status = services.createClient(name, client);
    if (status == 0) clients[client] = name;
    return status;
}

MIDIStatus RecordedMIDI::createSource(MIDIClientRef client, const std::string& name, MIDIEndpointRef& source) {
    const MIDIStatus status = services.createSource(client, name, source);
    const std::uint8_t surface = surfaceOf(name);
    if (status == 0 && surface != noSurface) sources[surface] = source;
    note(PortEvent::source, status, name);
    return status;
}

MIDIStatus RecordedMIDI::createDestination(MIDIClientRef client, const std::string& name, MIDIReadBlock read,
                                           MIDIEndpointRef& destination) {
    const MIDIStatus status = services.createDestination(
        client, name,
        [this, surface = surfaceOf(name), read = std::move(read)](ByteView packet) {
            recorder.note(Kind::midiIn, surface, {packet});
            read(packet);
        },
        destination);
    note(PortEvent::destination, status, name);
    return status;
}

void RecordedMIDI::onReturn(MIDIClientRef client, std::function<void()> back) {
    services.onReturn(client, [this, name = clients[client], back = std::move(back)] {
        note(PortEvent::returned, 0, name);
        back();
    });
}

void RecordedMIDI::onService(std::function<void(bool isThere)> changed) {
    services.onService([this, changed = std::move(changed)](bool isThere) {
        note(isThere ? PortEvent::serviceThere : PortEvent::serviceLost, 0, {});
        changed(isThere);
    });
}

// Recorded when it has gone, so that no fader waits for it.
MIDIStatus RecordedMIDI::received(MIDIEndpointRef source, ByteView message) {
    const MIDIStatus status = services.received(source, message);
    const blackbox::ResultHead head{status};
    recorder.note(Kind::midiOut, surfaceOf(source), {bytesOf(head), message});
    return status;
}

std::uint8_t RecordedMIDI::surfaceOf(const std::string& name) {
    const auto known = std::ranges::find(names, name);
    const auto number = static_cast<std::size_t>(known - names.begin());
    if (number >= mostSurfaces) return noSurface;
    if (known == names.end()) names.push_back(name);
    return static_cast<std::uint8_t>(number);
}

std::uint8_t RecordedMIDI::surfaceOf(MIDIEndpointRef source) const {
    for (std::size_t i = 0; i < mostSurfaces; ++i)
        if (sources[i].load(std::memory_order_relaxed) == source) return static_cast<std::uint8_t>(i);
    return noSurface;
}

void RecordedMIDI::note(PortEvent event, MIDIStatus status, std::string_view name) const {
    const blackbox::ResultHead head{status};
    recorder.note(Kind::midiPort, event, {bytesOf(head), textBytes(name)});
}

} // namespace lumbrine
