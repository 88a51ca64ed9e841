// For tests: a client's bytes, and what came back, told in words.
#pragma once

#include "simulator/wire/header_block.h"
#include "simulator/wire/http2_frame.h"

#include <string>
#include <string_view>
#include <vector>

namespace lumbrine::wire {

inline void append(Bytes& bytes, const Bytes& more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
}

inline Bytes frameBytes(FrameType type, std::uint8_t flags, std::uint32_t stream, Bytes payload = {}) {
    Bytes bytes;
    appendFrame(bytes, makeFrame(type, flags, stream, std::move(payload)));
    return bytes;
}

inline Bytes bigEndian32(std::uint32_t value) {
    Bytes bytes;
    appendBigEndian32(bytes, value);
    return bytes;
}

// Preface and SETTINGS with these settings, each two and four bytes.
inline Bytes greeting(const Bytes& settings = {}) {
    Bytes bytes(preface.begin(), preface.end());
    append(bytes, frameBytes(FrameType::settings, 0, 0, settings));
    return bytes;
}

inline Bytes settingOf(Setting setting, std::uint32_t value) {
    Bytes bytes{0, static_cast<std::uint8_t>(setting)};
    append(bytes, bigEndian32(value));
    return bytes;
}

// As the receiver writes it: POST, http, a path, an authority, a content type and te.
inline Bytes requestBlock(std::string_view path = "/ptsl.PTSL/SendGrpcRequest",
                          std::string_view contentType = "application/grpc", std::string_view te = "trailers") {
    Bytes block{0x83, 0x86};
    const auto literal = [&](std::initializer_list<std::uint8_t> name, std::string_view value) {
        block.insert(block.end(), name);
        block.push_back(static_cast<std::uint8_t>(value.size()));
        block.insert(block.end(), value.begin(), value.end());
    };
    literal({0x04}, path);
    literal({0x01}, "127.0.0.1:31416");
    literal({0x0F, 0x10}, contentType);
    literal({0x00, 0x02, 't', 'e'}, te);
    return block;
}

inline Bytes grpcMessage(std::string_view message) {
    Bytes bytes{0};
    append(bytes, bigEndian32(static_cast<std::uint32_t>(message.size())));
    bytes.insert(bytes.end(), message.begin(), message.end());
    return bytes;
}

// A whole call.
inline Bytes callBytes(std::uint32_t stream, std::string_view message, const Bytes& block = requestBlock()) {
    Bytes bytes = frameBytes(FrameType::headers, flag::endHeaders, stream, block);
    append(bytes, frameBytes(FrameType::data, flag::endStream, stream, grpcMessage(message)));
    return bytes;
}

inline std::vector<Frame> framesOf(const Bytes& bytes) {
    FrameCutter cutter(16'777'215);
    cutter.add(bytes);
    std::vector<Frame> frames;
    while (auto frame = cutter.next())
        frames.push_back(std::move(*frame));
    return frames;
}

inline std::string hexOf(const Bytes& bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

// "HEADERS 1: content-type ..." is too long: a frame is told as its type, its stream, its flags when it has some, and
// what it holds where that matters: "DATA 1 (7)", "HEADERS 1 +5 grpc-status 0", "GOAWAY 0000000000000001".
inline std::string told(const Frame& frame) {
    constexpr std::array<std::string_view, 10> names{"DATA",          "HEADERS",      "PRIORITY", "RST_STREAM",
                                                     "SETTINGS",      "PUSH_PROMISE", "PING",     "GOAWAY",
                                                     "WINDOW_UPDATE", "CONTINUATION"};
    std::string text(frame.type < names.size() ? names[frame.type] : "UNKNOWN");
    if (frame.stream != 0) text += " " + std::to_string(frame.stream);
    if (frame.flags != 0) text += " +" + std::to_string(frame.flags);
    if (frame.is(FrameType::data)) return text + " (" + std::to_string(frame.payload.size()) + ")";
    if (frame.is(FrameType::headers)) {
        for (std::size_t at = 0; at + 12 <= frame.payload.size(); ++at) {
            const std::string_view rest(reinterpret_cast<const char*>(frame.payload.data()) + at,
                                        frame.payload.size() - at);
            if (!rest.starts_with("grpc-status")) continue;
            const auto length = static_cast<std::size_t>(rest[11]);
            return text + " grpc-status " + std::string(rest.substr(12, length));
        }
        return text;
    }
    return frame.payload.empty() ? text : text + " " + hexOf(frame.payload);
}

inline std::vector<std::string> told(const Bytes& bytes) {
    std::vector<std::string> texts;
    for (const Frame& frame : framesOf(bytes))
        texts.push_back(told(frame));
    return texts;
}

} // namespace lumbrine::wire
