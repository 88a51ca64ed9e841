// One connection to the scripting service: cleartext HTTP/2, one unary gRPC call at a time.
#pragma once

#include "base/bilingual.h"
#include "base/bytes.h"
#include "platform/api/runtime.h"
#include "platform/api/stream_socket.h"
#include "ptsl/http2_frames.h"
#include "ptsl/ptsl_error.h"

#include <cstdint>
#include <expected>
#include <string>
#include <string_view>

namespace lumbrine {

// Not thread-safe: one serial queue makes the calls, one after another, and each call blocks it.
//
// Every wait has a limit. With T = `timeoutInSeconds`:
// - Connecting takes at most T.
// - Sending takes at most 2 T in all, and at most T for each piece.
// - A peer that sends nothing for T ends the call with timedOut.
// - A response that is incomplete T after the request ends the call with timedOut after the frame that is being
//   received, at the latest another T later.
// With the scripting link's T of 3 seconds, a call to any peer takes at most 15 seconds (3 to connect, 6 to send, 6 to
// receive), and 3 when the peer is silent.
class PTSLWire {
public:
    // Connects at the first call. `runtime` and `sockets` must outlive the wire.
    PTSLWire(Runtime& runtime, StreamSockets& sockets, Bilingual text, std::string host, std::uint16_t port,
             double timeoutInSeconds);
    ~PTSLWire();
    PTSLWire(const PTSLWire&) = delete;
    PTSLWire& operator=(const PTSLWire&) = delete;

    // Makes one call and returns the message of the response, without the gRPC prefix. Connects first if needed. A
    // failure leaves the connection as it is: call `close` to get a new one.
    std::expected<Bytes, PTSLError> call(std::string_view path, ByteView message);

    // Closes the connection if there is one, connects, and sends the HTTP/2 preface without waiting for the peer's.
    // When connecting fails, nothing is open afterwards.
    std::expected<void, PTSLError> open();

    bool isOpen() const { return fd >= 0; }

    // Closes the connection. The next call opens a new one and begins with stream 1.
    void close();

private:
    std::expected<void, PTSLError> connectSocket();
    std::expected<void, PTSLError> greet();
    std::expected<Bytes, PTSLError> readResponse(std::uint32_t streamID);
    std::expected<void, PTSLError> receiveMore();
    using Send = int (StreamSockets::*)(int fd, ByteView bytes);
    std::expected<void, PTSLError> sendAll(ByteView bytes, Send send = &StreamSockets::send);

    using SetTimeout = int (StreamSockets::*)(int fd, Duration limit);
    bool mayWait(SetTimeout set, Duration& current);
    std::unexpected<PTSLError> transportError(std::string_view english, std::string_view japanese, int error) const;

    Runtime& runtime;
    StreamSockets& sockets;
    const Bilingual text;

    int fd = -1;
    std::uint32_t nextStreamID = 1;
    FrameReader rx;
    const std::string host;
    const std::uint16_t port;
    const double timeout;

    TimePoint limit{};         // the end of the time for sending, or for receiving the current frame
    Duration receiveTimeout{}; // the value set on the socket
    Duration sendTimeout{};    // the value set on the socket
};

} // namespace lumbrine
