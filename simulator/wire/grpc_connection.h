// The service's side of one HTTP/2 connection with unary gRPC calls: bytes in, calls out; replies in, bytes out. No
// I/O, no threads, no clock. libnghttp2 does HTTP/2; this class adds gRPC, and the settings and pings of gRPC's
// official server.
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

    // Sends its settings at once, as servers do. They are valid from the client's acknowledgement on: until then, a
    // frame of more than 16,384 bytes ends the connection.
    GrpcConnection();
    GrpcConnection(const GrpcConnection&) = delete;
    GrpcConnection& operator=(const GrpcConnection&) = delete;

    // Handles bytes of the client in pieces of any size. A client that breaks the protocol gets a GOAWAY with the error
    // code; its later bytes are ignored.
    void receive(ByteView bytes);

    // The calls that have become complete since the last take.
    std::vector<Call> takeCalls();

    // Answers a call with one message, as fast as the client's windows allow. Does nothing when the client has
    // cancelled the call. Answer each call once, by this or by `fail`.
    void reply(std::int32_t stream, ByteView message);

    // Ends a call without a message. `text` must be printable ASCII without '%'.
    void fail(std::int32_t stream, GrpcStatus status, std::string_view text);

    // Ends the connection by a GOAWAY with no error.
    void goAway();

    // Returns and removes the bytes to send.
    Bytes takeOutput();

    // True when the connection can be closed, because all output has been taken.
    bool isOver() const;

private:
    struct Stream {
        std::map<std::string, std::string, std::less<>> headers;
        Bytes request;
        Bytes answer;
        std::size_t sent = 0; // bytes of the answer

        bool isGrpc() const;
    };
    struct Ended {
        void operator()(nghttp2_session* ending) const;
    };
    struct Events;

    void completed(std::int32_t id);

    std::map<std::int32_t, Stream> streams;
    std::vector<Call> calls;
    bool unreadable = false; // the client does not speak HTTP/2
    std::unique_ptr<nghttp2_session, Ended> session;
};

} // namespace lumbrine::wire
