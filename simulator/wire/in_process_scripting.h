// The scripting service at the far end of byte streams inside one process, in virtual time: HTTP/2 and gRPC as the
// receiver meets them on TCP, with the faults of the wire that the options have.
#pragma once

#include "base/bytes.h"
#include "platform/api/runtime.h"
#include "simulator/simulated_scripting.h"

#include <functional>
#include <memory>

namespace lumbrine {

// One stream as the service holds it. Sending never waits; after an end nothing more is sent.
class ScriptingLine {
public:
    virtual ~ScriptingLine() = default;
    virtual void send(ByteView bytes) = 0; // the client receives each piece by itself
    virtual void finish() = 0;             // ends it in order, after what was sent
    virtual void breakOff() = 0;           // ends it at once
};

// What the service makes of a stream. Destroyed when the client has closed it.
class ScriptingConnection {
public:
    virtual ~ScriptingConnection() = default;
    virtual void received(ByteView bytes) = 0; // from the client; never waits
};

// Used by threads that take turns, as those of virtual time do. Connections may outlive it; they have ended then.
class InProcessScripting {
public:
    // `setListening` says whether streams may come in; called at once with true. The service outlives this.
    InProcessScripting(Runtime& runtime, SimulatedScripting& scripting, std::function<void(bool)> setListening);
    ~InProcessScripting();
    InProcessScripting(const InProcessScripting&) = delete;
    InProcessScripting& operator=(const InProcessScripting&) = delete;

    std::unique_ptr<ScriptingConnection> accept(std::unique_ptr<ScriptingLine> line);

    // Between calls. All connections get a GOAWAY and end.
    void goAway();

    // All connections break; the service is away for the down time, and knows no session when it comes back.
    void die();

private:
    class Connections;
    const std::shared_ptr<Connections> connections;
};

} // namespace lumbrine
