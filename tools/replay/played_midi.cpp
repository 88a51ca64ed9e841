#include "tools/replay/played_midi.h"

#include "blackbox/payload.h"

#include <algorithm>

namespace lumbrine::blackbox {

namespace {

constexpr std::size_t mostSurfaces = 8; // that a recording tells apart

Lane::Wanted portEvents(PortEvent event) {
    return [event](const Record& record) {
        return record.kind == Kind::midiPort && record.channel == static_cast<std::uint8_t>(event);
    };
}

MIDIStatus statusIn(const Record* record) {
    const auto head = record == nullptr ? std::nullopt : headOf<ResultHead>(*record);
    return head ? head->result : 0;
}

} // namespace

PlayedMIDI::PlayedMIDI(const std::vector<Record>& records)
    : sources(records, portEvents(PortEvent::source)), destinations(records, portEvents(PortEvent::destination)) {
    for (std::size_t surface = 0; surface < mostSurfaces; ++surface)
        sent.emplace(surface, Lane(records, [surface](const Record& record) {
                         return record.kind == Kind::midiOut && record.channel == surface;
                     }));
}

MIDIStatus PlayedMIDI::createClient(const std::string& name, MIDIClientRef& client) {
    client = static_cast<MIDIClientRef>(clients.size() + 1);
    clients[client] = name;
    return 0;
}

MIDIStatus PlayedMIDI::createSource(MIDIClientRef, const std::string& name, MIDIEndpointRef& source) {
    const std::size_t surface = surfaceOf(name);
    const MIDIStatus status = statusIn(sources.take());
    if (status != 0) return status;
    source = ++endpoints;
    surfaces[source] = surface;
    return 0;
}

MIDIStatus PlayedMIDI::createDestination(MIDIClientRef, const std::string& name, MIDIReadBlock read,
                                         MIDIEndpointRef& destination) {
    const std::size_t surface = surfaceOf(name);
    const MIDIStatus status = statusIn(destinations.take());
    if (status != 0) return status;
    destination = ++endpoints;
    reads[surface] = std::move(read);
    return 0;
}

void PlayedMIDI::onReturn(MIDIClientRef client, std::function<void()> back) {
    returns[clients[client]] = std::move(back);
}

// A message that was refused is refused again.
MIDIStatus PlayedMIDI::received(MIDIEndpointRef source, ByteView) {
    const auto surface = surfaces.find(source);
    const auto lane = surface == surfaces.end() ? sent.end() : sent.find(surface->second);
    return lane == sent.end() ? 0 : statusIn(lane->second.take());
}

void PlayedMIDI::play(const Record& record) const {
    if (record.kind == Kind::midiIn) {
        const auto read = reads.find(record.channel);
        if (read != reads.end() && read->second && !record.payload.empty()) read->second(record.payload);
        return;
    }
    const auto event = static_cast<PortEvent>(record.channel);
    if (event == PortEvent::returned) {
        const auto back = returns.find(asText(behind<ResultHead>(record)));
        if (back != returns.end() && back->second) back->second();
    } else if (serviceChanged && (event == PortEvent::serviceLost || event == PortEvent::serviceThere)) {
        serviceChanged(event == PortEvent::serviceThere);
    }
}

std::size_t PlayedMIDI::surfaceOf(const std::string& name) {
    const auto known = std::ranges::find(names, name);
    const auto number = static_cast<std::size_t>(known - names.begin());
    if (known == names.end()) names.push_back(name);
    return number;
}

} // namespace lumbrine::blackbox
