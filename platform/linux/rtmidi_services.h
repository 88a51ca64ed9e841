// Virtual MIDI ports through RtMidi, for Linux without JACK: ports of the ALSA sequencer.
//
// Every port is a separate sequencer client. ALSA re-encodes outgoing messages: complete MIDI messages pass unchanged,
// other bytes are lost.
#pragma once

#include "platform/api/midi_services.h"
#include "platform/api/runtime.h"

#include <memory>
#include <string>
#include <vector>

namespace lumbrine {

// Programs use `alsa`. `jack` is for tests on computers without ALSA.
enum class RtMidiSystem { alsa, jack };

class RtMidiServices final : public MIDIServices {
public:
    explicit RtMidiServices(Runtime& runtime, RtMidiSystem system = RtMidiSystem::alsa);
    ~RtMidiServices() override;

    // True when ALSA's sequencer can be opened.
    static bool alsaAnswers();

    // Creation calls: one thread at a time, and all of them before the first `received`. They return RtMidi's error
    // type, -EINVAL for an invalid client, or -EIO.
    MIDIStatus createClient(const std::string& name, MIDIClientRef& client) override;
    MIDIStatus createSource(MIDIClientRef client, const std::string& name, MIDIEndpointRef& source) override;

    // Calls `read` on a separate thread for each destination. An event of more than 256 bytes is delivered in several
    // packets, each in its own list.
    MIDIStatus createDestination(MIDIClientRef client, const std::string& name, MIDIReadBlock read,
                                 MIDIEndpointRef& destination) override;

    // Does nothing and succeeds: RtMidi has no such IDs.
    MIDIStatus setUniqueID(MIDIEndpointRef endpoint, std::int32_t uniqueID) override;

    MIDIStatus received(MIDIEndpointRef source, ByteView message) override;

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
