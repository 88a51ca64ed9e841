// Connections to virtual MIDI ports through RtMidi, by the ports' short names.
#pragma once

#include "platform/api/midi_connections.h"
#include "platform/api/runtime.h"
#include "platform/linux/rtmidi_services.h"

#include <memory>

namespace lumbrine {

// RtMidi does not report when ports appear or disappear, so each connection looks for them once a second.
class RtMidiConnections final : public MIDIConnections {
public:
    explicit RtMidiConnections(Runtime& runtime, RtMidiSystem system = RtMidiSystem::alsa);

    // Null when the system cannot be opened.
    std::unique_ptr<MIDIConnection> connect(const std::string& portName,
                                            std::function<void(ByteView)> incoming) override;

private:
    Runtime& runtime;
    const RtMidiSystem system;
};

} // namespace lumbrine
