// A relay of TCP connections on this computer: it stands between clients and a service, and what passes by may be
// looked at, changed and cut off.
#pragma once

#include "base/bytes.h"
#include "platform/api/time.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace lumbrine {

// What becomes of the bytes of one connection. All calls come from the relay's own thread.
class RelayedConnection {
public:
    enum class End {
        none,
        finish, // the connection ends in order once the bytes are sent
        die,    // the relay breaks all its connections and takes none until its down time is over
    };
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
    std::uint16_t port = 0;    // where clients come, on 127.0.0.1; 0 takes one that is free
    std::uint16_t service = 0; // where the service is, on 127.0.0.1
    Duration downTime = Duration::zero();
    std::size_t bytesAtOnce = 0; // clients get pieces of at most this size; 0 for as they come
    std::function<std::unique_ptr<RelayedConnection>()> connected = {};
    std::function<void()> died = {}; // on the relay's own thread
};

// Works until it is destroyed; then all its connections break.
class StreamRelay {
public:
    virtual ~StreamRelay() = default;

    // Absent when the port is taken; then nothing is relayed.
    virtual std::optional<std::uint16_t> port() const = 0;
};

class StreamRelays {
public:
    virtual ~StreamRelays() = default;
    virtual std::unique_ptr<StreamRelay> start(RelaySetup setup) = 0;
};

} // namespace lumbrine
