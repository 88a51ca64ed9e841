#include "simulator/wire/grpc_connection.h"

#include "simulator/wire/http2_frame.h"

#include <nghttp2/nghttp2.h>

#include <algorithm>
#include <array>
#include <limits>
#include <span>
#include <utility>

namespace lumbrine::wire {

namespace {

// The settings of gRPC's official server: window, longest frame, longest header block, and binary metadata.
constexpr std::uint32_t window = 4'194'303;
constexpr std::array<nghttp2_settings_entry, 4> settings{{{NGHTTP2_SETTINGS_INITIAL_WINDOW_SIZE, window},
                                                          {NGHTTP2_SETTINGS_MAX_FRAME_SIZE, window},
                                                          {NGHTTP2_SETTINGS_MAX_HEADER_LIST_SIZE, 8192},
                                                          {0xFE03, 1}}};

constexpr std::size_t messagePrefix = 5; // compression flag and length

Bytes messageOf(ByteView content) {
    Bytes message{0};
    appendBigEndian32(message, static_cast<std::uint32_t>(content.size()));
    append(message, content);
    return message;
}

// The views need not outlive the call: the library copies the texts.
nghttp2_nv header(std::string_view name, std::string_view value) {
    const auto bytes = [](std::string_view text) {
        return reinterpret_cast<std::uint8_t*>(const_cast<char*>(text.data()));
    };
    return {bytes(name), bytes(value), name.size(), value.size(), NGHTTP2_NV_FLAG_NONE};
}

constexpr std::string_view contentType = "application/grpc";

} // namespace

bool GrpcConnection::Stream::isGrpc() const {
    const auto is = [this](std::string_view name, std::string_view value) {
        const auto found = headers.find(name);
        return found != headers.end() && found->second == value;
    };
    return is(":method", "POST") && is("content-type", contentType) && is("te", "trailers");
}

void GrpcConnection::Ended::operator()(nghttp2_session* ending) const {
    nghttp2_session_del(ending);
}

// The callbacks of the nghttp2 session; `self` is the connection.
struct GrpcConnection::Events {
    static GrpcConnection& of(void* self) { return *static_cast<GrpcConnection*>(self); }

    static int header(nghttp2_session*, const nghttp2_frame* frame, const std::uint8_t* name, std::size_t nameLength,
                      const std::uint8_t* value, std::size_t valueLength, std::uint8_t, void* self) {
        of(self).streams[frame->hd.stream_id].headers[{name, name + nameLength}] = {value, value + valueLength};
        return 0;
    }

    static int data(nghttp2_session*, std::uint8_t, std::int32_t id, const std::uint8_t* bytes, std::size_t length,
                    void* self) {
        append(of(self).streams[id].request, {bytes, length});
        return 0;
    }

    static int frame(nghttp2_session* session, const nghttp2_frame* frame, void* self) {
        const nghttp2_frame_hd& got = frame->hd;
        if (got.type == NGHTTP2_DATA && got.length > 0)
            nghttp2_submit_window_update(session, NGHTTP2_FLAG_NONE, 0, static_cast<std::int32_t>(got.length));
        const bool ofRequest = got.type == NGHTTP2_DATA || got.type == NGHTTP2_HEADERS;
        if (ofRequest && (got.flags & NGHTTP2_FLAG_END_STREAM) != 0) of(self).completed(got.stream_id);
        return 0;
    }

    static int closed(nghttp2_session*, std::int32_t id, std::uint32_t, void* self) {
        of(self).streams.erase(id);
        return 0;
    }

    // Provides more of an answer, and its trailers at the end.
    static ssize_t answer(nghttp2_session* session, std::int32_t id, std::uint8_t* buffer, std::size_t room,
                          std::uint32_t* flags, nghttp2_data_source*, void* self) {
        Stream& stream = of(self).streams.at(id);
        const ByteView piece =
            ByteView(stream.answer).subspan(stream.sent).first(std::min(room, stream.answer.size() - stream.sent));
        std::ranges::copy(piece, buffer);
        stream.sent += piece.size();
        if (stream.sent == stream.answer.size()) {
            *flags = NGHTTP2_DATA_FLAG_EOF | NGHTTP2_DATA_FLAG_NO_END_STREAM;
            const nghttp2_nv ok = wire::header("grpc-status", "0");
            nghttp2_submit_trailer(session, id, &ok, 1);
        }
        return static_cast<ssize_t>(piece.size());
    }
};

GrpcConnection::GrpcConnection() {
    nghttp2_session_callbacks* events = nullptr;
    nghttp2_session_callbacks_new(&events);
    nghttp2_session_callbacks_set_on_header_callback(events, Events::header);
    nghttp2_session_callbacks_set_on_data_chunk_recv_callback(events, Events::data);
    nghttp2_session_callbacks_set_on_frame_recv_callback(events, Events::frame);
    nghttp2_session_callbacks_set_on_stream_close_callback(events, Events::closed);
    nghttp2_option* options = nullptr;
    nghttp2_option_new(&options);
    // Both limits of the library are switched off: the one on resets depends on the real clock, and the one on
    // CONTINUATION counts the pieces in which a frame arrives.
    nghttp2_option_set_stream_reset_rate_limit(options, std::numeric_limits<std::uint64_t>::max(), 0);
    nghttp2_option_set_max_continuations(options, std::numeric_limits<std::size_t>::max());
    nghttp2_session* made = nullptr;
    nghttp2_session_server_new2(&made, events, this, options);
    session.reset(made);
    nghttp2_option_del(options);
    nghttp2_session_callbacks_del(events);

    nghttp2_submit_settings(made, NGHTTP2_FLAG_NONE, settings.data(), settings.size());
    nghttp2_session_set_local_window_size(made, NGHTTP2_FLAG_NONE, 0, window);
}

void GrpcConnection::receive(ByteView bytes) {
    // One by one, because after a client's GOAWAY the library still reads the piece in which that came, but no other:
    // what a client is answered would depend on how its bytes were cut.
    for (const std::uint8_t& byte : bytes)
        unreadable = unreadable || nghttp2_session_mem_recv(session.get(), &byte, 1) < 0;
}

void GrpcConnection::completed(std::int32_t id) {
    // Real gRPC servers send a BDP-probe PING per call, which the client must acknowledge.
    nghttp2_submit_ping(session.get(), NGHTTP2_FLAG_NONE, nullptr);
    const Stream& stream = streams.at(id);
    if (!stream.isGrpc()) return fail(id, GrpcStatus::internal, "this is no gRPC request");
    const ByteView request = stream.request;
    if (!request.empty() && request.front() != 0)
        return fail(id, GrpcStatus::unimplemented, "messages are not decompressed");
    const ByteView content = request.subspan(std::min(messagePrefix, request.size()));
    if (!std::ranges::equal(request, messageOf(content)))
        return fail(id, GrpcStatus::internal, "the message is not what its prefix says");
    calls.push_back({id, stream.headers.at(":path"), {content.begin(), content.end()}});
}

std::vector<GrpcConnection::Call> GrpcConnection::takeCalls() {
    return std::exchange(calls, {});
}

void GrpcConnection::reply(std::int32_t id, ByteView message) {
    const auto found = streams.find(id);
    if (found == streams.end()) return;
    found->second.answer = messageOf(message);
    const std::array headers{header(":status", "200"), header("content-type", contentType)};
    const nghttp2_data_provider body{{}, Events::answer};
    nghttp2_submit_response(session.get(), id, headers.data(), headers.size(), &body);
}

void GrpcConnection::fail(std::int32_t id, GrpcStatus status, std::string_view text) {
    const std::string number = std::to_string(static_cast<int>(status));
    const std::array headers{header(":status", "200"), header("content-type", contentType),
                             header("grpc-status", number), header("grpc-message", text)};
    nghttp2_submit_response(session.get(), id, headers.data(), headers.size(), nullptr);
}

void GrpcConnection::goAway() {
    nghttp2_session_terminate_session(session.get(), NGHTTP2_NO_ERROR);
}

Bytes GrpcConnection::takeOutput() {
    Bytes output;
    const std::uint8_t* piece = nullptr;
    for (ssize_t length = 0; (length = nghttp2_session_mem_send(session.get(), &piece)) > 0;)
        append(output, std::span(piece, static_cast<std::size_t>(length)));
    return output;
}

bool GrpcConnection::isOver() const {
    const bool done = nghttp2_session_want_read(session.get()) == 0 && nghttp2_session_want_write(session.get()) == 0;
    return unreadable || done;
}

} // namespace lumbrine::wire
