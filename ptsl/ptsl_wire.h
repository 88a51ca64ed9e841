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

// Not thread-safe: calls come one after another, from one serial queue, and block it.
//
// Every wait has an end. Connecting takes at most `timeout`. A piece that the peer does not take or bring within
// `timeout` ends the call with timedOut; so does a response that is not there `timeout` after the request, as soon as
// the frame at hand is whole, and at the latest another `timeout` later. Sending has twice `timeout` in all. So with
// the 3 seconds of the scripting link a call lasts 15 seconds at most (3 to connect, 6 to send, 6 to receive), whatever
// the peer does, and 3 when it is silent.
class PTSLWire {
public:
    // Nothing is connected yet. Runtime and sockets outlive the wire.
    PTSLWire(Runtime& rt, StreamSockets& streamSockets, Bilingual bilingual, std::string serviceHost,
             std::uint16_t servicePort, double timeoutInSeconds);
    ~PTSLWire();
    PTSLWire(const PTSLWire&) = delete;
    PTSLWire& operator=(const PTSLWire&) = delete;

    // One call: the response's message, without the gRPC prefix. Connects first when nothing is connected. A failure
    // leaves the connection as it is; whoever wants a fresh one closes it.
    std::expected<Bytes, PTSLError> call(std::string_view path, ByteView message);

    // Connects anew and greets the service, without waiting for its greeting. After a failure of the connecting itself
    // nothing is open.
    std::expected<void, PTSLError> open();

    // Forgets everything about the connection: the next call starts a new one with stream 1.
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

    TimePoint limit{};         // when the sending, or the frame that is being received, must be over
    Duration receiveTimeout{}; // as the socket has them
    Duration sendTimeout{};
};

} // namespace lumbrine
