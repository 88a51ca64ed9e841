// MIDI ports from which a recording's packets come.
#pragma once

#include "platform/api/midi_services.h"
#include "tools/replay/tape.h"

#include <map>
#include <string>
#include <vector>

namespace lumbrine::blackbox {

class PlayedMIDI final : public MIDIServices {
public:
    // The records outlive it.
    explicit PlayedMIDI(const std::vector<Record>& records);

    MIDIStatus createClient(const std::string& name, MIDIClientRef& client) override;
    MIDIStatus createSource(MIDIClientRef client, const std::string& name, MIDIEndpointRef& source) override;
    MIDIStatus createDestination(MIDIClientRef client, const std::string& name, MIDIReadBlock read,
                                 MIDIEndpointRef& destination) override;
    void onReturn(MIDIClientRef client, std::function<void()> back) override;
    void onService(std::function<void(bool isThere)> changed) override { serviceChanged = std::move(changed); }
    MIDIStatus setUniqueID(MIDIEndpointRef, std::int32_t) override { return 0; }
    MIDIStatus received(MIDIEndpointRef source, ByteView message) override;

    // Gives the receiver what a record of the kinds midiIn and midiPort has. The changes of the service belong on the
    // main thread.
    void play(const Record& record) const;

private:
    std::size_t surfaceOf(const std::string& name);

    Lane sources, destinations;
    std::map<std::size_t, Lane> sent;
    std::vector<std::string> names; // of the surfaces, in the order of their numbers
    std::map<std::size_t, MIDIReadBlock> reads;
    std::map<MIDIEndpointRef, std::size_t> surfaces; // of the sources
    std::map<MIDIClientRef, std::string> clients;
    std::map<std::string, std::function<void()>, std::less<>> returns; // by the client's name
    std::function<void(bool isThere)> serviceChanged;
    MIDIEndpointRef endpoints = 0;
};

} // namespace lumbrine::blackbox
