// The scripting service as programs offer it: by gRPC on a port of this computer, and through a relay with faults when
// the options ask for faults of the wire.
#pragma once

#include "platform/api/runtime.h"
#include "platform/api/stream_relay.h"
#include "simulator/grpc/grpc_scripting_server.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace lumbrine {

class OfferedScripting {
public:
    // On 127.0.0.1; port 0 takes one that is free. Everything passed by reference outlives this.
    OfferedScripting(Runtime& runtime, StreamRelays& relays, SimulatedScripting& served, std::uint16_t wantedPort);
    ~OfferedScripting();
    OfferedScripting(const OfferedScripting&) = delete;
    OfferedScripting& operator=(const OfferedScripting&) = delete;

    // Absent when the port is taken; then nothing is offered.
    std::optional<std::uint16_t> port() const;

private:
    SimulatedScripting& scripting;
    const GrpcScriptingServer server; // behind the relay on a port of its own
    std::unique_ptr<StreamRelay> relay;
};

} // namespace lumbrine
