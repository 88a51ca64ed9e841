// A scripting service in a process of its own, on the official gRPC library, that does nothing but answer: what a call
// costs beyond it is the client's.
#pragma once

#include <sys/types.h>

#include <cstdint>

namespace lumbrine {

class ScriptingServer {
public:
    // Forks, so before the first thread of this program.
    ScriptingServer();
    ~ScriptingServer();
    ScriptingServer(const ScriptingServer&) = delete;
    ScriptingServer& operator=(const ScriptingServer&) = delete;

    // On 127.0.0.1. Every request completes with an empty reply.
    std::uint16_t port() const { return servedPort; }

private:
    pid_t process = -1;
    int lifeline = -1; // its closing ends the process
    std::uint16_t servedPort = 0;
};

} // namespace lumbrine
