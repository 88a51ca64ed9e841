// Connections to the virtual MIDI ports of another program in CoreMIDI, by the ports' names.
#pragma once

#include "platform/api/midi_connections.h"
#include "platform/api/runtime.h"

#include <memory>

namespace lumbrine {

// Each connection is a CoreMIDI client "<name> host". On a thread of its own it looks for a source and a destination of
// the name, at once and then every `betweenLooks`, and after a message that CoreMIDI refused. Of several it takes the
// first, and keeps it as long as it exists.
//
// When the ports vanish, either their program or the system's MIDI server has gone. A client of an earlier server is
// of no use, so a new one is made then. The old one is disposed of only afterwards: CoreMIDI may refuse to make a
// client for a process that has given up its last one.
class CoreMIDIConnections final : public MIDIConnections {
public:
    static constexpr Duration betweenLooks = seconds(0.5);

    explicit CoreMIDIConnections(Runtime& runtime) : runtime(runtime) {}

    // Never null. `incoming` is called on CoreMIDI's thread and gets the first 256 bytes of a longer packet; it must
    // not destroy the connection. Destroying a connection waits for a call of `incoming` that has begun.
    std::unique_ptr<MIDIConnection> connect(const std::string& portName,
                                            std::function<void(ByteView)> incoming) override;

private:
    Runtime& runtime;
};

} // namespace lumbrine
