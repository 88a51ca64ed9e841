// The calls with which a program makes virtual MIDI ports, at the level at which CoreMIDI offers them.
#pragma once

#include "base/bytes.h"

#include <cstdint>
#include <functional>
#include <string>

namespace lumbrine {

using MIDIStatus = std::int32_t; // 0 is success, anything else the system's error number
using MIDIClientRef = std::uint32_t;
using MIDIEndpointRef = std::uint32_t; // 0 is no endpoint

// Gets one packet list (base/midi_packet_list.h) for each delivery, on the system's MIDI receive thread. The bytes are
// valid during the call.
using MIDIReadBlock = std::function<void(ByteView packetList)>;

class MIDIServices {
public:
    virtual ~MIDIServices() = default;

    // Each fills its last argument on success only. Objects live as long as the services.
    virtual MIDIStatus createClient(const std::string& name, MIDIClientRef& client) = 0;
    virtual MIDIStatus createSource(MIDIClientRef client, const std::string& name, MIDIEndpointRef& source) = 0;
    virtual MIDIStatus createDestination(MIDIClientRef client, const std::string& name, MIDIReadBlock read,
                                         MIDIEndpointRef& destination) = 0;

    // Lets the other side recognise the port across launches, where the system has such a thing.
    virtual MIDIStatus setUniqueID(MIDIEndpointRef endpoint, std::int32_t uniqueID) = 0;

    // Delivers a packet list from a virtual source to whoever is connected to it. Any thread; never blocks; when nobody
    // listens or the system's MIDI service is away, the bytes are gone.
    virtual MIDIStatus received(MIDIEndpointRef source, ByteView packetList) = 0;
};

} // namespace lumbrine
