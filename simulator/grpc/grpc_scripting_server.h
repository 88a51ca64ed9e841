// The scripting service by gRPC on this computer, on the official library: "/ptsl.PTSL/SendGrpcRequest", and
// "/ptsl.PTSL/SendGrpcStreamingRequest", which answers the same as a stream of one message.
//
// The library's threads only hand requests over; they are served on the scripting service's own queue. For real time.
#pragma once

#include "platform/api/runtime.h"
#include "simulator/simulated_scripting.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace lumbrine {

class GrpcScriptingServer {
public:
    // Listens on 127.0.0.1 at once; port 0 takes one that is free. Runtime and service outlive the server. From now on
    // the library logs nothing in this process: what goes wrong is told by `port`.
    GrpcScriptingServer(Runtime& runtime, SimulatedScripting& scripting, std::uint16_t wantedPort);

    // Ends all connections; calls that are not answered end as unavailable.
    ~GrpcScriptingServer();

    GrpcScriptingServer(const GrpcScriptingServer&) = delete;
    GrpcScriptingServer& operator=(const GrpcScriptingServer&) = delete;

    // Absent when the port is taken; then nothing is served.
    std::optional<std::uint16_t> port() const;

private:
    class Running;
    const std::unique_ptr<Running> running;
};

} // namespace lumbrine
