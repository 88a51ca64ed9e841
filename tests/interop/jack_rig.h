// For tests: both sides of the virtual MIDI ports on a real JACK server, the receiver's ports and connections to them.
#pragma once

#include "platform/linux/jack_midi_connections.h"
#include "platform/linux/jack_midi_services.h"
#include "platform/posix/real_runtime.h"
#include "platform/posix/run_loop.h"
#include "tests/interop/midi_recorder.h"
#include "tests/interop/private_jack.h"

#include <atomic>
#include <memory>
#include <string>

namespace lumbrine::interop {

// The two ports of one surface, and the connection to them.
struct Surface {
    explicit Surface(std::string name) : name(std::move(name)) {}

    const std::string name;
    MIDIClientRef client = 0;
    MIDIEndpointRef source = 0;
    MIDIEndpointRef destination = 0;
    MIDIRecorder atReceiver;
    std::atomic<int> returns{0}; // of the ports after a loss
    MIDIRecorder atHost;
    std::unique_ptr<MIDIConnection> host;
};

class JackRig {
public:
    explicit JackRig(JackMode mode = JackMode::synchronous)
        : jack({.mode = mode}), services(runtime, server), connections(runtime, server) {}

    // Creates the ports. Returns the first status that is not 0.
    MIDIStatus createPorts(Surface& surface) {
        MIDIStatus status = services.createClient(surface.name, surface.client);
        if (status == 0) status = services.createSource(surface.client, surface.name, surface.source);
        if (status != 0) return status;
        services.onReturn(surface.client, [&surface] { ++surface.returns; });
        return services.createDestination(surface.client, surface.name, surface.atReceiver.asReceiver(),
                                          surface.destination);
    }

    void connectHost(Surface& surface) {
        surface.host = connections.connect(surface.name, surface.atHost.asReceiver());
    }

    // Sends one message from the receiver's source.
    MIDIStatus send(const Surface& surface, ByteView message) { return services.received(surface.source, message); }

    // Sends from both sides until both have received something. An asynchronous server may lose events.
    bool carriesBothWays(Surface& surface, ByteView toHost, ByteView toReceiver) {
        return waitUntil([&] {
            send(surface, toHost);
            surface.host->send(toReceiver);
            return surface.atHost.size() > 0 && surface.atReceiver.size() > 0;
        });
    }

    PrivateJack jack;
    RunLoop loop;
    RealRuntime runtime{loop};
    Surface a{"Lumbrine"};
    Surface b{"Lumbrine B"};
    std::shared_ptr<JackServer> server = JackServer::start(runtime);
    JackMIDIServices services;
    JackMIDIConnections connections;
};

} // namespace lumbrine::interop
