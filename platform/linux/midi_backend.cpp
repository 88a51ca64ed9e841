#include "platform/linux/midi_backend.h"

#include "platform/linux/jack_midi_connections.h"
#include "platform/linux/jack_midi_services.h"
#include "platform/linux/rtmidi_connections.h"
#include "platform/linux/rtmidi_services.h"

#include <cerrno>
#include <cstdlib>

namespace lumbrine {

namespace {

class AbsentMIDIServices final : public MIDIServices {
public:
    MIDIStatus createClient(const std::string&, MIDIClientRef&) override { return -ENODEV; }
    MIDIStatus createSource(MIDIClientRef, const std::string&, MIDIEndpointRef&) override { return -ENODEV; }
    MIDIStatus createDestination(MIDIClientRef, const std::string&, MIDIReadBlock, MIDIEndpointRef&) override {
        return -ENODEV;
    }
    MIDIStatus setUniqueID(MIDIEndpointRef, std::int32_t) override { return -ENODEV; }
    MIDIStatus received(MIDIEndpointRef, ByteView) override { return -ENODEV; }
};

class AbsentMIDIConnections final : public MIDIConnections {
public:
    std::unique_ptr<MIDIConnection> connect(const std::string&, std::function<void(ByteView)>) override {
        return nullptr;
    }
};

} // namespace

MIDIBackend::MIDIBackend() {
    // PipeWire's JACK would else turn the ping 90 00 00 into a note-off. What the user has set stays.
    ::setenv("PIPEWIRE_PROPS", "{ jack.fix-midi-events = false }", 0); // NOLINT(concurrency-mt-unsafe): at the start
}

std::unique_ptr<MIDIServices> MIDIBackend::services(Runtime& runtime) const {
    if (JackServer::answers())
        return std::make_unique<JackMIDIServices>(runtime, std::make_shared<JackServer>(runtime));
    if (RtMidiServices::alsaAnswers()) return std::make_unique<RtMidiServices>(runtime);
    return std::make_unique<AbsentMIDIServices>();
}

std::unique_ptr<MIDIConnections> MIDIBackend::connections(Runtime& runtime) const {
    if (JackServer::answers())
        return std::make_unique<JackMIDIConnections>(runtime, std::make_shared<JackServer>(runtime));
    if (RtMidiServices::alsaAnswers()) return std::make_unique<RtMidiConnections>(runtime);
    return std::make_unique<AbsentMIDIConnections>();
}

} // namespace lumbrine
