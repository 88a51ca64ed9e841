// Creates virtual MIDI ports and sends from them. Each function stands for one call of CoreMIDI.
#pragma once

#include "base/bytes.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace lumbrine {

using MIDIStatus = std::int32_t; // 0 is success, anything else the system's error number
using MIDIClientRef = std::uint32_t;
using MIDIEndpointRef = std::uint32_t; // 0 is no endpoint

// Called with the bytes of each packet that arrives, at least one byte, on the system's MIDI receive thread. The bytes
// are valid during the call only.
using MIDIReadBlock = std::function<void(ByteView packet)>;

class MIDIServices {
public:
    virtual ~MIDIServices() = default;

    // The last argument is written on success only. Clients and endpoints live as long as the services.
    virtual MIDIStatus createClient(const std::string& name, MIDIClientRef& client) = 0;
    virtual MIDIStatus createSource(MIDIClientRef client, const std::string& name, MIDIEndpointRef& source) = 0;
    virtual MIDIStatus createDestination(MIDIClientRef client, const std::string& name, MIDIReadBlock read,
                                         MIDIEndpointRef& destination) = 0;

    // `back` is called on the MIDI receive thread when the client's ports were lost with the system's MIDI service and
    // are there again, before anything else arrives: what was under way in either direction never came. Call it before
    // createDestination. Back ends that never lose their ports ignore it.
    // NOLINTNEXTLINE(performance-unnecessary-value-param): by value for those that keep it
    virtual void onReturn(MIDIClientRef /*client*/, std::function<void()> /*back*/) {}

    // `changed` is called on the main thread: with false when the system's MIDI service is lost, with all ports; with
    // true when it is there again, or there at last after a creation failed without it: then create what is missing.
    // Back ends whose service is always there ignore it.
    // NOLINTNEXTLINE(performance-unnecessary-value-param): by value for those that keep it
    virtual void onService(std::function<void(bool isThere)> /*changed*/) {}

    // Whether another program is connected to the endpoint; absent where the system does not tell. Never blocks. Any
    // thread.
    virtual std::optional<bool> isConnected(MIDIEndpointRef /*endpoint*/) const { return std::nullopt; }

    // Gives the endpoint an ID by which other programs recognise it after a restart. Fails for a while after a restart,
    // as long as the system has not forgotten the former endpoint. Back ends without such IDs ignore it.
    virtual MIDIStatus setUniqueID(MIDIEndpointRef endpoint, std::int32_t uniqueID) = 0;

    // Delivers a message, as one packet, from a virtual source to every program that is connected to it. Without a
    // listener, or while the system's MIDI service is away, the bytes are dropped. Fails when there is no room for the
    // message. Never blocks. Any thread.
    virtual MIDIStatus received(MIDIEndpointRef source, ByteView message) = 0;
};

} // namespace lumbrine
