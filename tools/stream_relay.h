// A relay of TCP connections on this computer, between clients and a service. It can read, change and cut off what they
// send. One thread serves all connections of a relay.
#pragma once

#include "base/bytes.h"
#include "platform/api/runtime.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace lumbrine {

// Decides what happens to the bytes of one connection. All calls come from the relay's own thread.
class RelayedConnection {
public:
    enum class End {
        none,
        finish, // the connection is closed once the bytes are sent
        die,    // the relay resets all its connections and accepts none until its down time is over
    };
    // What to send in place of the received bytes, and what to do with the connection afterwards.
    struct Passed {
        Bytes toClient = {};
        Bytes toService = {};
        End end = End::none;
    };

    virtual ~RelayedConnection() = default;
    virtual Passed fromClient(ByteView bytes) = 0;
    virtual Passed fromService(ByteView bytes) = 0;
};

struct RelaySetup {
    std::uint16_t port = 0;    // clients connect to this port on 127.0.0.1; 0: any free port
    std::uint16_t service = 0; // the service's port on 127.0.0.1
    Duration downTime = Duration::zero();
    std::size_t bytesAtOnce = 0; // the most bytes sent to a client in one call; 0: no limit
    // Called for each new connection, on the relay's own thread.
    std::function<std::unique_ptr<RelayedConnection>()> connected = {};
    std::function<void()> died = {}; // called after End::die, on the relay's own thread
};

// Works until it is destroyed; then all its connections break. The runtime is the real one: sockets do not wait in
// virtual time.
class StreamRelay {
public:
    StreamRelay(Runtime& runtime, RelaySetup setup);
    ~StreamRelay();

    // The port that clients connect to. Absent if it was taken; then nothing is relayed.
    std::optional<std::uint16_t> port() const;

private:
    class Traffic;
    const std::unique_ptr<Traffic> traffic;
};

} // namespace lumbrine
