// Virtual MIDI ports by CoreMIDI.
#pragma once

#include "platform/api/midi_services.h"

#include <vector>

namespace lumbrine {

// Ports are made from one thread at a time. What arrives comes on CoreMIDI's own high-priority thread.
class CoreMIDIServices final : public MIDIServices {
public:
    CoreMIDIServices() = default;
    CoreMIDIServices(const CoreMIDIServices&) = delete;
    CoreMIDIServices& operator=(const CoreMIDIServices&) = delete;

    // Takes the ports away, the newest first. CoreMIDI may still be in the middle of handing something over.
    ~CoreMIDIServices() override;

    MIDIStatus createClient(const std::string& name, MIDIClientRef& client) override;
    MIDIStatus createSource(MIDIClientRef client, const std::string& name, MIDIEndpointRef& source) override;
    MIDIStatus createDestination(MIDIClientRef client, const std::string& name, MIDIReadBlock read,
                                 MIDIEndpointRef& destination) override;
    MIDIStatus setUniqueID(MIDIEndpointRef endpoint, std::int32_t uniqueID) override;
    MIDIStatus received(MIDIEndpointRef source, ByteView packetList) override;

private:
    std::vector<MIDIClientRef> clients;
    std::vector<MIDIEndpointRef> endpoints;
};

} // namespace lumbrine
