// A scripting service in a separate process, on the official gRPC library. It answers every request at once and with
// nothing, so that the time of a call is the client's.
#pragma once

#include <sys/types.h>

#include <cstdint>

namespace lumbrine {

class ScriptingServer {
public:
    // Forks: create it before the program's first thread.
    ScriptingServer();
    ~ScriptingServer();
    ScriptingServer(const ScriptingServer&) = delete;
    ScriptingServer& operator=(const ScriptingServer&) = delete;

    // The TCP port on 127.0.0.1; 0 if the server could not start.
    std::uint16_t port() const { return servedPort; }

private:
    pid_t process = -1;
    int lifeline = -1; // the write end of a pipe; the server process ends when it is closed
    std::uint16_t servedPort = 0;
};

} // namespace lumbrine
