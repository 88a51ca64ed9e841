// Virtual MIDI ports through RtMidi: what Linux without JACK has, the ALSA sequencer.
//
// Every port is a sequencer client of its own. RtMidi re-encodes what it sends, so bytes that are no MIDI message are
// lost in ALSA; whole messages pass unaltered.
#pragma once

#include "platform/api/midi_services.h"
#include "platform/api/runtime.h"

#include <memory>
#include <string>
#include <vector>

namespace lumbrine {

// RtMidi's other system is named by tests alone, which run where there is no ALSA.
enum class RtMidiSystem { alsa, jack };

class RtMidiServices final : public MIDIServices {
public:
    explicit RtMidiServices(Runtime& rt, RtMidiSystem midiSystem = RtMidiSystem::alsa);
    ~RtMidiServices() override;

    // True when ALSA's sequencer can be opened.
    static bool alsaAnswers();

    // Creation calls: before any sending, one thread at a time. Their status is RtMidi's kind of error, -EINVAL for a
    // client that is none, or -EIO.
    MIDIStatus createClient(const std::string& name, MIDIClientRef& client) override;
    MIDIStatus createSource(MIDIClientRef client, const std::string& name, MIDIEndpointRef& source) override;

    // `read` runs on a thread of the destination's own. An event longer than a packet holds (256 bytes) comes in
    // several packets, each in a list of its own.
    MIDIStatus createDestination(MIDIClientRef client, const std::string& name, MIDIReadBlock read,
                                 MIDIEndpointRef& destination) override;

    // RtMidi has no such thing: nothing to do, and no failure.
    MIDIStatus setUniqueID(MIDIEndpointRef endpoint, std::int32_t uniqueID) override;

    MIDIStatus received(MIDIEndpointRef source, ByteView packetList) override;

private:
    class Source;
    class Destination;

    Runtime& runtime;
    const RtMidiSystem system;
    std::vector<std::string> clients;
    std::vector<std::unique_ptr<Source>> sources;
    std::vector<std::unique_ptr<Destination>> destinations;
};

} // namespace lumbrine
