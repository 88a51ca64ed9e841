// MIDI ports whose traffic is recorded, each surface under its number.
#pragma once

#include "platform/api/midi_services.h"
#include "platform/recorded/recorder.h"

#include <array>
#include <atomic>
#include <map>
#include <string>
#include <vector>

namespace lumbrine {

class RecordedMIDI final : public MIDIServices {
public:
    // Both outlive it.
    RecordedMIDI(MIDIServices& recorded, const Recorder& itsRecorder) : services(recorded), recorder(itsRecorder) {}

    MIDIStatus createClient(const std::string& name, MIDIClientRef& client) override;
    MIDIStatus createSource(MIDIClientRef client, const std::string& name, MIDIEndpointRef& source) override;
    MIDIStatus createDestination(MIDIClientRef client, const std::string& name, MIDIReadBlock read,
                                 MIDIEndpointRef& destination) override;
    void onReturn(MIDIClientRef client, std::function<void()> back) override;
    void onService(std::function<void(bool isThere)> changed) override;
    std::optional<bool> isConnected(MIDIEndpointRef endpoint) const override { return services.isConnected(endpoint); }
    MIDIStatus setUniqueID(MIDIEndpointRef endpoint, std::int32_t uniqueID) override {
        return services.setUniqueID(endpoint, uniqueID);
    }
    MIDIStatus received(MIDIEndpointRef source, ByteView message) override;

private:
    static constexpr std::size_t mostSurfaces = 8; // the product has two
    static constexpr std::uint8_t noSurface = 0xFF;

    std::uint8_t surfaceOf(const std::string& name);
    std::uint8_t surfaceOf(MIDIEndpointRef source) const;
    void note(blackbox::PortEvent event, MIDIStatus status, std::string_view name) const;

    MIDIServices& services;
    const Recorder& recorder;
    std::vector<std::string> names;               // of the surfaces, in the order of their numbers; main thread
    std::map<MIDIClientRef, std::string> clients; // main thread
    std::array<std::atomic<MIDIEndpointRef>, mostSurfaces> sources{};
};

} // namespace lumbrine
