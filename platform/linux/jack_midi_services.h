// Virtual MIDI ports in JACK.
//
// A JACK client cannot own two ports of one short name, so all sources live in one client and all destinations in a
// second one. Both ask for the name that the first MIDI client asked for; JACK makes the second one's name unique:
// "Lumbrine:Lumbrine" and "Lumbrine-01:Lumbrine". Two clients for any number of ports also mean that the process wakes
// up twice a cycle and not more often.
#pragma once

#include "platform/api/midi_services.h"
#include "platform/linux/jack_client.h"

#include <array>
#include <atomic>
#include <memory>

namespace lumbrine {

// Where the server dies, what is sent is dropped at once; when a server comes back, the ports are made again and go on.
class JackMIDIServices final : public MIDIServices {
public:
    // Share the server with whatever else of this process goes to JACK.
    JackMIDIServices(Runtime& rt, std::shared_ptr<JackServer> jackServer);

    // Creation calls: one thread at a time. Their status is JACK's, or -EINVAL for a client that is none.
    MIDIStatus createClient(const std::string& name, MIDIClientRef& client) override;
    MIDIStatus createSource(MIDIClientRef client, const std::string& name, MIDIEndpointRef& source) override;

    // `read` runs on one thread for all destinations. An event longer than a packet holds (256 bytes) comes in several
    // packets, each in a list of its own.
    MIDIStatus createDestination(MIDIClientRef client, const std::string& name, MIDIReadBlock read,
                                 MIDIEndpointRef& destination) override;

    // JACK knows its ports by their names alone: nothing to do, and no failure.
    MIDIStatus setUniqueID(MIDIEndpointRef endpoint, std::int32_t uniqueID) override;

    // Each packet becomes one JACK event at the start of the next cycle.
    MIDIStatus received(MIDIEndpointRef source, ByteView packetList) override;

    // Events that found no room, in either direction, ever.
    std::uint64_t dropped() const;

private:
    Runtime& runtime;
    const std::shared_ptr<JackServer> server;
    MIDIClientRef clientCount = 0;
    MIDIEndpointRef destinationCount = 0;
    std::array<std::atomic<JackOutput*>, JackClient::maxPorts + 1> outputs{}; // by source; 0 is none
    MIDIEndpointRef sourceCount = 0;

    JackClient::Pointer sources;
    JackClient::Pointer destinations;
};

} // namespace lumbrine
