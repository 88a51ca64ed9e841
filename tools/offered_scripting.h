// The scripting service as the programs offer it: by gRPC on a port of this computer, behind a relay with faults when
// the options ask for faults of the wire.
#pragma once

#include "base/bilingual.h"
#include "platform/api/runtime.h"
#include "simulator/grpc/grpc_scripting_server.h"
#include "tools/stream_relay.h"

#include <cstdint>
#include <optional>
#include <string>

namespace lumbrine {

class OfferedScripting;

// Where a receiver finds the service of its own demo, and no other program's when the demo offers none: nobody can
// listen on port 0.
std::uint16_t portForReceiver(const OfferedScripting* offered);

class OfferedScripting {
public:
    // Listens on 127.0.0.1; with port 0 the system chooses a free port. Everything passed by reference must outlive
    // this object.
    OfferedScripting(Runtime& runtime, SimulatedScripting& scripting, std::uint16_t wantedPort);
    ~OfferedScripting();
    OfferedScripting(const OfferedScripting&) = delete;
    OfferedScripting& operator=(const OfferedScripting&) = delete;

    // Absent when the port was taken; then nothing is offered.
    std::optional<std::uint16_t> port() const;

    // Tells the user where the service is, or that its port is taken.
    std::string line(const Bilingual& text) const;

private:
    SimulatedScripting& scripting;
    const std::uint16_t wantedPort;
    const GrpcScriptingServer server; // with a relay, on a free port behind it
    std::optional<StreamRelay> relay;
};

} // namespace lumbrine
