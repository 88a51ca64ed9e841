// Connections to virtual MIDI ports in JACK, by the ports' short names.
#pragma once

#include "platform/api/midi_connections.h"
#include "platform/linux/jack_server.h"

#include <memory>

namespace lumbrine {

// Each connection is a JACK client "<name> host" with the ports "<name> in" and "<name> out". It connects as soon as
// ports of this name appear in any client. Of several it takes the first, and keeps it as long as it exists.
class JackMIDIConnections final : public MIDIConnections {
public:
    // All JACK clients of a process share one server object.
    JackMIDIConnections(Runtime& runtime, std::shared_ptr<JackServer> server);

    // Calls `incoming` with each JACK event as a whole. Never null: without a server, the connection waits for one.
    std::unique_ptr<MIDIConnection> connect(const std::string& portName,
                                            std::function<void(ByteView)> incoming) override;

private:
    Runtime& runtime;
    const std::shared_ptr<JackServer> server;
};

} // namespace lumbrine
