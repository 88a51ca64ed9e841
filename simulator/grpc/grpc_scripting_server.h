// Serves the scripting service with the official gRPC library: "/ptsl.PTSL/SendGrpcRequest", and
// "/ptsl.PTSL/SendGrpcStreamingRequest", which sends the same answer as a stream of one message.
//
// The library's threads only pass requests on; the scripting service executes them on its own queue. For real time
// only.
#pragma once

#include "platform/api/runtime.h"
#include "simulator/simulated_scripting.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace lumbrine {

class GrpcScriptingServer {
public:
    // Listens on 127.0.0.1; with port 0 the system chooses a free port. Runtime and service must outlive the server.
    // Switches off the library's log in this process; a failure shows in `port`.
    GrpcScriptingServer(Runtime& runtime, SimulatedScripting& scripting, std::uint16_t wantedPort);

    // Ends all connections. Unanswered calls end with the status UNAVAILABLE.
    ~GrpcScriptingServer();

    GrpcScriptingServer(const GrpcScriptingServer&) = delete;
    GrpcScriptingServer& operator=(const GrpcScriptingServer&) = delete;

    // Absent when the port was taken; then nothing is served.
    std::optional<std::uint16_t> port() const;

private:
    class Running;
    const std::unique_ptr<Running> running;
};

} // namespace lumbrine
