// Serves the scripting service over byte streams inside one process, in virtual time: with HTTP/2 and gRPC as on TCP,
// and with the faults of the wire in the options.
#pragma once

#include "base/bytes.h"
#include "platform/api/runtime.h"
#include "simulator/simulated_scripting.h"

#include <functional>
#include <memory>

namespace lumbrine {

// The service's end of one stream. Sending never waits. After the stream has ended, nothing more is sent.
class ScriptingLine {
public:
    virtual ~ScriptingLine() = default;
    virtual void send(ByteView bytes) = 0; // the client receives each piece separately
    virtual void finish() = 0;             // ends the stream in order, after the bytes sent before
    virtual void breakOff() = 0;           // breaks the stream at once
};

// Serves one stream. Destroy it when the client has closed the stream.
class ScriptingConnection {
public:
    virtual ~ScriptingConnection() = default;
    virtual void received(ByteView bytes) = 0; // bytes from the client; never waits
};

// For threads that take turns, as in virtual time: it has no locks. Connections may outlive it; they have ended then.
class InProcessScripting {
public:
    // Calls `setListening` with whether new streams are accepted, at once with true. `scripting` must outlive this
    // object.
    InProcessScripting(Runtime& runtime, SimulatedScripting& scripting, std::function<void(bool)> setListening);
    ~InProcessScripting();
    InProcessScripting(const InProcessScripting&) = delete;
    InProcessScripting& operator=(const InProcessScripting&) = delete;

    std::unique_ptr<ScriptingConnection> accept(std::unique_ptr<ScriptingLine> line);

    // Ends all connections with a GOAWAY. Only between calls.
    void goAway();

    // Breaks all connections. The service is away for the down time, and knows no session identifier when it is back.
    void die();

private:
    class Connections;
    const std::shared_ptr<Connections> connections;
};

} // namespace lumbrine
