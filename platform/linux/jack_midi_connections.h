// Connections to virtual MIDI ports in JACK, by the ports' short names.
#pragma once

#include "platform/api/midi_connections.h"
#include "platform/linux/jack_server.h"

#include <memory>

namespace lumbrine {

// Each connection is a JACK client "<name> host" with the ports "<name> in" and "<name> out". It connects as soon as
// ports of the name appear, at whatever client; of several it takes the first and keeps it while it is there.
class JackMIDIConnections final : public MIDIConnections {
public:
    // Share the server with whatever else of this process goes to JACK. It outlives the connections made here.
    JackMIDIConnections(Runtime& rt, std::shared_ptr<JackServer> jackServer);

    // `incoming` gets each JACK event whole. Never null: while no server is there, the connection waits for one.
    std::unique_ptr<MIDIConnection> connect(const std::string& portName,
                                            std::function<void(ByteView)> incoming) override;

private:
    Runtime& runtime;
    const std::shared_ptr<JackServer> server;
};

} // namespace lumbrine
