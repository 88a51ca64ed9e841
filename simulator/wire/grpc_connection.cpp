#include "simulator/wire/grpc_connection.h"

#include "simulator/wire/header_block.h"

#include <algorithm>
#include <utility>

namespace lumbrine::wire {

namespace {

constexpr std::size_t smallestMaxFrame = 16'384; // what either side takes until it says otherwise
constexpr std::size_t largestMaxFrame = 16'777'215;
constexpr std::int64_t standardWindow = 65'535;
constexpr std::int64_t largestWindow = 0x7FFF'FFFF;
constexpr std::size_t longestMessage = 4'194'304;
constexpr std::size_t longestBlock = 65'536;
constexpr std::size_t messagePrefix = 5; // not compressed, and the length

void appendSetting(Bytes& payload, Setting setting, std::uint32_t value) {
    payload.push_back(0);
    payload.push_back(static_cast<std::uint8_t>(setting));
    appendBigEndian32(payload, value);
}

// Takes padding, and what goes before it, off a payload; false when there is less than that.
bool unpad(Frame& frame, std::size_t fixedPart) {
    std::size_t before = fixedPart, behind = 0;
    if (frame.has(flag::padded)) {
        if (frame.payload.empty()) return false;
        behind = frame.payload.front();
        ++before;
    }
    if (before + behind > frame.payload.size()) return false;
    frame.payload.resize(frame.payload.size() - behind);
    frame.payload.erase(frame.payload.begin(), frame.payload.begin() + static_cast<std::ptrdiff_t>(before));
    return true;
}

} // namespace

GrpcConnection::GrpcConnection()
    : cutter(smallestMaxFrame), connectionWindow(standardWindow), initialWindow(standardWindow),
      maxFrame(smallestMaxFrame) {
    Bytes settings;
    appendSetting(settings, Setting::initialWindowSize, longestMessage);
    send(FrameType::settings, 0, 0, std::move(settings));
    Bytes more;
    appendBigEndian32(more, longestMessage);
    send(FrameType::windowUpdate, 0, 0, std::move(more));
}

void GrpcConnection::receive(ByteView bytes) {
    if (over) return;
    const std::size_t missing = std::min(preface.size() - prefaceSoFar.size(), bytes.size());
    for (const std::uint8_t byte : bytes.first(missing)) {
        if (byte != static_cast<std::uint8_t>(preface[prefaceSoFar.size()])) return end(ErrorCode::protocolError);
        prefaceSoFar.push_back(byte);
    }
    cutter.add(bytes.subspan(missing));
    while (!over) {
        auto frame = cutter.next();
        if (!frame) break;
        handle(std::move(*frame));
    }
    if (cutter.tooLong()) end(ErrorCode::frameSizeError);
}

void GrpcConnection::handle(Frame frame) {
    const bool inBlock = openBlock != 0;
    if (inBlock != frame.is(FrameType::continuation)) return end(ErrorCode::protocolError);
    if (!std::exchange(settled, true) && !frame.is(FrameType::settings)) return end(ErrorCode::protocolError);
    switch (static_cast<FrameType>(frame.type)) {
    case FrameType::data:
        return onData(frame);
    case FrameType::headers:
        return onHeaders(frame);
    case FrameType::continuation:
        return onContinuation(frame);
    case FrameType::settings:
        return onSettings(frame);
    case FrameType::ping:
        return onPing(frame);
    case FrameType::windowUpdate:
        return onWindowUpdate(frame);
    case FrameType::rstStream:
        streams.erase(frame.stream);
        return;
    case FrameType::pushPromise:
        return end(ErrorCode::protocolError);
    case FrameType::priority:
    case FrameType::goAway:
        return;
    }
}

void GrpcConnection::onData(Frame& frame) {
    if (frame.stream == 0 || frame.stream > lastStream) return end(ErrorCode::protocolError);
    const auto length = static_cast<std::uint32_t>(frame.payload.size());
    if (!unpad(frame, 0)) return end(ErrorCode::protocolError);
    if (length > 0) {
        Bytes increment;
        appendBigEndian32(increment, length);
        send(FrameType::windowUpdate, 0, 0, increment);
        if (!frame.has(flag::endStream)) send(FrameType::windowUpdate, 0, frame.stream, std::move(increment));
    }
    const auto found = streams.find(frame.stream);
    if (found == streams.end()) return; // given up by one of us
    Stream& stream = found->second;
    if (stream.complete) return end(ErrorCode::streamClosed);
    stream.body.insert(stream.body.end(), frame.payload.begin(), frame.payload.end());
    if (stream.body.size() > longestMessage + messagePrefix)
        return fail(frame.stream, GrpcStatus::resourceExhausted, "the message is too long");
    if (frame.has(flag::endStream)) complete(frame.stream, stream);
}

void GrpcConnection::onHeaders(Frame& frame) {
    constexpr std::size_t priorityLength = 5;
    if (frame.stream % 2 == 0 || !unpad(frame, frame.has(flag::priority) ? priorityLength : 0))
        return end(ErrorCode::protocolError);
    openBlock = frame.stream;
    openBlockIsWhole = frame.has(flag::endStream);
    block = std::move(frame.payload);
    if (frame.has(flag::endHeaders)) beginStream(std::exchange(openBlock, 0), openBlockIsWhole);
}

void GrpcConnection::onContinuation(const Frame& frame) {
    if (frame.stream != openBlock) return end(ErrorCode::protocolError);
    block.insert(block.end(), frame.payload.begin(), frame.payload.end());
    if (block.size() > longestBlock) return end(ErrorCode::protocolError);
    if (frame.has(flag::endHeaders)) beginStream(std::exchange(openBlock, 0), openBlockIsWhole);
}

void GrpcConnection::beginStream(std::uint32_t id, bool whole) {
    const auto headers = decodeHeaders(block);
    if (!headers) return end(ErrorCode::compressionError);
    if (id <= lastStream) { // trailers, or a stream that is closed
        const auto found = streams.find(id);
        if (found == streams.end() || found->second.complete || !whole) return end(ErrorCode::streamClosed);
        return complete(id, found->second);
    }
    lastStream = id;
    const auto valueOf = [&](std::string_view name) {
        const auto found = std::ranges::find(*headers, name, &Header::name);
        return found == headers->end() ? std::string() : found->value;
    };
    Stream& stream = streams[id];
    stream.window = initialWindow;
    stream.path = valueOf(":path");
    if (valueOf(":method") != "POST" || !valueOf("content-type").starts_with("application/grpc") ||
        valueOf("te") != "trailers")
        return fail(id, GrpcStatus::internal, "this is no gRPC request");
    if (whole) complete(id, stream);
}

void GrpcConnection::complete(std::uint32_t id, Stream& stream) {
    stream.complete = true;
    if (stream.body.size() < messagePrefix) return fail(id, GrpcStatus::internal, "the message is not whole");
    if (stream.body.front() != 0) return fail(id, GrpcStatus::unimplemented, "compression is not supported");
    if (readBigEndian32(stream.body, 1) != stream.body.size() - messagePrefix)
        return fail(id, GrpcStatus::internal, "the message has another length than it says");
    // Servers measure the way to their clients while they serve them.
    send(FrameType::ping, 0, 0, Bytes(8, 0x5A));
    calls.push_back({id, stream.path, Bytes(stream.body.begin() + messagePrefix, stream.body.end())});
    stream.body.clear();
}

void GrpcConnection::onSettings(const Frame& frame) {
    constexpr std::size_t settingLength = 6;
    if (frame.stream != 0) return end(ErrorCode::protocolError);
    if (frame.has(flag::ack)) return;
    if (frame.payload.size() % settingLength != 0) return end(ErrorCode::frameSizeError);
    for (std::size_t at = 0; at < frame.payload.size() && !over; at += settingLength) {
        const auto setting = static_cast<std::uint16_t>(frame.payload[at] << 8 | frame.payload[at + 1]);
        applySetting(setting, readBigEndian32(frame.payload, at + 2));
    }
    if (over) return;
    send(FrameType::settings, flag::ack, 0);
    flushAll();
}

void GrpcConnection::applySetting(std::uint16_t setting, std::uint32_t value) {
    if (setting == static_cast<std::uint16_t>(Setting::initialWindowSize)) {
        if (value > largestWindow) return end(ErrorCode::flowControlError);
        for (auto& [id, stream] : streams)
            stream.window += value - initialWindow;
        initialWindow = value;
    } else if (setting == static_cast<std::uint16_t>(Setting::maxFrameSize)) {
        if (value < smallestMaxFrame || value > largestMaxFrame) return end(ErrorCode::protocolError);
        maxFrame = value;
    }
}

void GrpcConnection::onPing(const Frame& frame) {
    constexpr std::size_t pingLength = 8;
    if (frame.stream != 0) return end(ErrorCode::protocolError);
    if (frame.payload.size() != pingLength) return end(ErrorCode::frameSizeError);
    if (!frame.has(flag::ack)) send(FrameType::ping, flag::ack, 0, frame.payload);
}

void GrpcConnection::onWindowUpdate(const Frame& frame) {
    constexpr std::size_t updateLength = 4;
    if (frame.payload.size() != updateLength) return end(ErrorCode::frameSizeError);
    const std::uint32_t increment = readBigEndian32(frame.payload, 0) & 0x7FFF'FFFF;
    if (increment == 0 || frame.stream > lastStream) return end(ErrorCode::protocolError);
    const auto found = streams.find(frame.stream);
    if (frame.stream != 0 && found == streams.end()) return;
    std::int64_t& window = frame.stream == 0 ? connectionWindow : found->second.window;
    window += increment;
    if (window > largestWindow) return end(ErrorCode::flowControlError);
    flushAll();
}

std::vector<GrpcConnection::Call> GrpcConnection::takeCalls() {
    return std::exchange(calls, {});
}

void GrpcConnection::reply(std::uint32_t id, ByteView message) {
    const auto found = streams.find(id);
    if (over || found == streams.end() || found->second.answered) return;
    Stream& stream = found->second;
    stream.answered = true;
    stream.waiting.push_back(0);
    appendBigEndian32(stream.waiting, static_cast<std::uint32_t>(message.size()));
    stream.waiting.insert(stream.waiting.end(), message.begin(), message.end());
    send(FrameType::headers, flag::endHeaders, id, responseHeaders());
    flush(id);
}

void GrpcConnection::fail(std::uint32_t id, GrpcStatus status, std::string_view message) {
    if (over || streams.erase(id) == 0) return;
    Bytes all = responseHeaders();
    const Bytes last = trailers(static_cast<int>(status), message);
    all.insert(all.end(), last.begin(), last.end());
    send(FrameType::headers, flag::endHeaders | flag::endStream, id, std::move(all));
}

void GrpcConnection::flush(std::uint32_t id) {
    Stream& stream = streams.at(id);
    std::size_t sent = 0;
    while (sent < stream.waiting.size()) {
        const std::int64_t window = std::min(connectionWindow, stream.window);
        if (window <= 0) break;
        const std::size_t length = std::min({stream.waiting.size() - sent, maxFrame, static_cast<std::size_t>(window)});
        const auto begin = stream.waiting.begin() + static_cast<std::ptrdiff_t>(sent);
        send(FrameType::data, 0, id, Bytes(begin, begin + static_cast<std::ptrdiff_t>(length)));
        connectionWindow -= static_cast<std::int64_t>(length);
        stream.window -= static_cast<std::int64_t>(length);
        sent += length;
    }
    stream.waiting.erase(stream.waiting.begin(), stream.waiting.begin() + static_cast<std::ptrdiff_t>(sent));
    if (!stream.waiting.empty()) return;
    send(FrameType::headers, flag::endHeaders | flag::endStream, id, trailers(static_cast<int>(GrpcStatus::ok), ""));
    streams.erase(id);
}

void GrpcConnection::flushAll() {
    std::vector<std::uint32_t> answered;
    for (const auto& [id, stream] : streams)
        if (stream.answered) answered.push_back(id);
    for (const std::uint32_t id : answered)
        flush(id);
}

void GrpcConnection::send(FrameType type, std::uint8_t flags, std::uint32_t stream, Bytes payload) {
    appendFrame(output, makeFrame(type, flags, stream, std::move(payload)));
}

Bytes GrpcConnection::takeOutput() {
    return std::exchange(output, {});
}

void GrpcConnection::end(ErrorCode error) {
    if (std::exchange(over, true)) return;
    Bytes payload;
    appendBigEndian32(payload, lastStream);
    appendBigEndian32(payload, static_cast<std::uint32_t>(error));
    send(FrameType::goAway, 0, 0, std::move(payload));
    streams.clear();
}

} // namespace lumbrine::wire
