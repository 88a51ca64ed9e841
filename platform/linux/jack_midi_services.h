// Virtual MIDI ports in JACK.
//
// A JACK client cannot have two ports with the same short name. Therefore all sources are in one client and all
// destinations in a second one. Both request the name of the first MIDI client, and JACK makes the second one unique:
// "Lumbrine:Lumbrine" and "Lumbrine-01:Lumbrine". With two clients for any number of ports, JACK wakes the process
// twice in each cycle and not more often.
#pragma once

#include "platform/api/midi_services.h"
#include "platform/linux/jack_client.h"

#include <array>
#include <atomic>
#include <functional>
#include <map>
#include <memory>

namespace lumbrine {

// While the server is gone, messages are dropped at once. When a server is back, the ports are registered again.
class JackMIDIServices final : public MIDIServices {
public:
    // All JACK clients of a process share one server object.
    JackMIDIServices(Runtime& runtime, std::shared_ptr<JackServer> server);

    // Creation calls: one thread at a time. They return JACK's status, or -EINVAL for an invalid client.
    MIDIStatus createClient(const std::string& name, MIDIClientRef& client) override;
    MIDIStatus createSource(MIDIClientRef client, const std::string& name, MIDIEndpointRef& source) override;

    // One thread calls `read` for all destinations. An event of more than 256 bytes is delivered in several packets,
    // each in its own list.
    MIDIStatus createDestination(MIDIClientRef client, const std::string& name, MIDIReadBlock read,
                                 MIDIEndpointRef& destination) override;

    void onReturn(MIDIClientRef client, std::function<void()> back) override;

    std::optional<bool> isConnected(MIDIEndpointRef endpoint) const override;

    // Does nothing and succeeds: JACK identifies ports by their names only.
    MIDIStatus setUniqueID(MIDIEndpointRef endpoint, std::int32_t uniqueID) override;

    // Each packet becomes one JACK event at the start of the next cycle.
    MIDIStatus received(MIDIEndpointRef source, ByteView message) override;

    // The number of events lost to full rings, in both directions since the start.
    std::uint64_t dropped() const;

private:
    Runtime& runtime;
    const std::shared_ptr<JackServer> server;
    MIDIClientRef clientCount = 0;
    MIDIEndpointRef destinationCount = 0;
    std::array<std::atomic<JackOutput*>, JackClient::maxPorts + 1> outputs{}; // by source; 0 is none
    std::array<std::atomic<JackInput*>, JackClient::maxPorts> inputs{};       // by number of the destination
    MIDIEndpointRef sourceCount = 0;
    std::map<MIDIClientRef, std::function<void()>> returns;

    JackClient::Pointer sources;
    JackClient::Pointer destinations;
};

} // namespace lumbrine
