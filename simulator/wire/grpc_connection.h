// The service's side of one HTTP/2 connection that carries unary gRPC calls: bytes in, calls out; replies in, bytes
// out. No I/O, no threads, no clock. HTTP/2 is libnghttp2's; what is added is gRPC, and what gRPC's official server
// announces and sends beside its answers.
#pragma once

#include "base/bytes.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

struct nghttp2_session;

namespace lumbrine::wire {

enum class GrpcStatus { ok = 0, unimplemented = 12, internal = 13 };

class GrpcConnection {
public:
    struct Call {
        std::int32_t stream;
        std::string path;
        Bytes message;
    };

    // Says its settings at once, as servers do. The settings hold from the client's acknowledgement on: until then a
    // frame of more than 16,384 bytes ends the connection.
    GrpcConnection();
    GrpcConnection(const GrpcConnection&) = delete;
    GrpcConnection& operator=(const GrpcConnection&) = delete;

    // What the client has sent, in pieces of any size. A client that breaks the protocol gets a GOAWAY that says how;
    // whatever it sends after that is not looked at.
    void receive(ByteView bytes);

    // The calls that have come in whole since the last take.
    std::vector<Call> takeCalls();

    // Answers a call with one message, as fast as the client's windows let it; nothing when the client has given it up.
    // Each call is answered once, by this or by `fail`.
    void reply(std::int32_t stream, ByteView message);

    // Ends a call without a message; `text` is printable ASCII without '%'.
    void fail(std::int32_t stream, GrpcStatus status, std::string_view text);

    // Ends the connection with a GOAWAY without an error.
    void goAway();

    // What is to be sent.
    Bytes takeOutput();

    // The connection is to be closed: all that was to be said has been taken.
    bool isOver() const;

private:
    struct Stream {
        std::map<std::string, std::string, std::less<>> headers;
        Bytes request;
        Bytes answer;
        std::size_t sent = 0; // of the answer

        bool isGrpc() const;
    };
    struct Ended {
        void operator()(nghttp2_session* ending) const;
    };
    struct Events;

    void completed(std::int32_t id);

    std::map<std::int32_t, Stream> streams;
    std::vector<Call> calls;
    bool unreadable = false; // what the client speaks is no HTTP/2
    std::unique_ptr<nghttp2_session, Ended> session;
};

} // namespace lumbrine::wire
