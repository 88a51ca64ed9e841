// The service's side of one HTTP/2 connection that carries unary gRPC calls: bytes in, calls out; replies in, bytes
// out. No I/O. Written against RFC 9113 and the gRPC protocol over HTTP/2, for clients that need neither Huffman coding
// nor the dynamic table; the official library serves all others.
#pragma once

#include "simulator/wire/http2_frame.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine::wire {

enum class GrpcStatus { ok = 0, resourceExhausted = 8, unimplemented = 12, internal = 13 };

class GrpcConnection {
public:
    struct Call {
        std::uint32_t stream;
        std::string path;
        Bytes message;
    };

    // Says its settings at once, as servers do.
    GrpcConnection();

    // What the client has sent, in pieces of any size. A client that breaks the protocol gets a GOAWAY that says how;
    // whatever it sends after that is not looked at.
    void receive(ByteView bytes);

    // The calls that have come in whole since the last take.
    std::vector<Call> takeCalls();

    // Answers a call with one message, as fast as the client's windows let it; nothing when the client has given it up.
    void reply(std::uint32_t stream, ByteView message);

    // Ends a call without a message; `message` is ASCII and shorter than 127 bytes.
    void fail(std::uint32_t stream, GrpcStatus status, std::string_view message);

    // What is to be sent.
    Bytes takeOutput();

    // The connection is to be closed once the output is sent.
    bool isOver() const { return over; }

private:
    struct Stream {
        std::string path;
        Bytes body;
        bool complete = false; // the client has sent all of it
        std::int64_t window = 0;
        Bytes waiting; // what the windows have not let through
        bool answered = false;
    };

    void handle(Frame frame);
    void onData(Frame& frame);
    void onHeaders(Frame& frame);
    void onContinuation(const Frame& frame);
    void onSettings(const Frame& frame);
    void onPing(const Frame& frame);
    void onWindowUpdate(const Frame& frame);

    void beginStream(std::uint32_t id, bool whole);
    void complete(std::uint32_t id, Stream& stream);
    void applySetting(std::uint16_t setting, std::uint32_t value);
    void flush(std::uint32_t id);
    void flushAll();
    void send(FrameType type, std::uint8_t flags, std::uint32_t stream, Bytes payload = {});
    void end(ErrorCode error);

    Bytes prefaceSoFar;
    FrameCutter cutter;
    bool settled = false; // the client's settings have come

    // A header block that goes on in further frames.
    std::uint32_t openBlock = 0;
    bool openBlockIsWhole = false;
    Bytes block;

    std::map<std::uint32_t, Stream> streams;
    std::uint32_t lastStream = 0;
    std::int64_t connectionWindow;
    std::int64_t initialWindow;
    std::size_t maxFrame;

    std::vector<Call> calls;
    Bytes output;
    bool over = false;
};

} // namespace lumbrine::wire
