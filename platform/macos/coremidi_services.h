// Virtual MIDI ports of CoreMIDI.
#pragma once

#include "platform/api/midi_services.h"

#include <vector>

namespace lumbrine {

// Creation calls: one thread at a time. Read blocks are called on CoreMIDI's high-priority thread, with the first
// 256 bytes of a longer packet. A message is refused when it does not fit a packet list of 512 bytes. Neither way
// allocates.
class CoreMIDIServices final : public MIDIServices {
public:
    CoreMIDIServices() = default;
    CoreMIDIServices(const CoreMIDIServices&) = delete;
    CoreMIDIServices& operator=(const CoreMIDIServices&) = delete;

    // Removes the ports, the newest first. CoreMIDI may still be inside a read block meanwhile.
    ~CoreMIDIServices() override;

    MIDIStatus createClient(const std::string& name, MIDIClientRef& client) override;
    MIDIStatus createSource(MIDIClientRef client, const std::string& name, MIDIEndpointRef& source) override;
    MIDIStatus createDestination(MIDIClientRef client, const std::string& name, MIDIReadBlock read,
                                 MIDIEndpointRef& destination) override;
    MIDIStatus setUniqueID(MIDIEndpointRef endpoint, std::int32_t uniqueID) override;
    MIDIStatus received(MIDIEndpointRef source, ByteView message) override;

private:
    std::vector<MIDIClientRef> clients;
    std::vector<MIDIEndpointRef> endpoints;
};

} // namespace lumbrine
