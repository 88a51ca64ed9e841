// For tests: MIDI services that record every call and fail where the test asks for it.
#pragma once

#include "platform/api/midi_services.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace lumbrine {

class RecordingMIDIServices final : public MIDIServices {
public:
    static constexpr MIDIClientRef clientRef = 11;
    static constexpr MIDIEndpointRef sourceRef = 22;
    static constexpr MIDIEndpointRef destinationRef = 33;

    MIDIStatus createClient(const std::string& name, MIDIClientRef& client) override {
        calls.push_back("client " + name);
        if (clientStatus == 0) client = clientRef;
        return clientStatus;
    }

    MIDIStatus createSource(MIDIClientRef client, const std::string& name, MIDIEndpointRef& source) override {
        calls.push_back("source " + name + " of " + std::to_string(client));
        if (sourceStatus == 0) source = sourceRef;
        return sourceStatus;
    }

    MIDIStatus createDestination(MIDIClientRef client, const std::string& name, MIDIReadBlock read,
                                 MIDIEndpointRef& destination) override {
        calls.push_back("destination " + name + " of " + std::to_string(client));
        if (destinationStatus != 0) return destinationStatus;
        destination = destinationRef;
        deliver = std::move(read);
        return 0;
    }

    void onReturn(MIDIClientRef, std::function<void()> back) override { portsAreBack = std::move(back); }

    MIDIStatus setUniqueID(MIDIEndpointRef endpoint, std::int32_t uniqueID) override {
        calls.push_back("id of " + std::to_string(endpoint) + " is " + std::to_string(uniqueID));
        return uniqueIDStatus;
    }

    MIDIStatus received(MIDIEndpointRef source, ByteView message) override {
        if (source != sourceRef) calls.push_back("received from " + std::to_string(source));
        sent.emplace_back(message.begin(), message.end());
        if (onReceived) onReceived();
        return receivedStatus;
    }

    MIDIStatus clientStatus = 0;
    MIDIStatus sourceStatus = 0;
    MIDIStatus destinationStatus = 0;
    MIDIStatus uniqueIDStatus = 0;
    MIDIStatus receivedStatus = 0;

    std::vector<std::string> calls; // all but the sending, in order
    std::vector<Bytes> sent;
    MIDIReadBlock deliver; // what the destination does with a packet
    std::function<void()> portsAreBack;
    std::function<void()> onReceived; // after each sending, when set
};

} // namespace lumbrine
