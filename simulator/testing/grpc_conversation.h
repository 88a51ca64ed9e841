// For tests: the bytes of a client, and the service's answers in words.
#pragma once

#include "simulator/wire/http2_frame.h"

#include <nghttp2/nghttp2.h>

#include <string>
#include <string_view>
#include <vector>

namespace lumbrine::wire {

inline Bytes frameBytes(std::uint8_t type, std::uint8_t flags, std::uint32_t stream, Bytes payload = {}) {
    Bytes bytes;
    appendFrame(bytes, {type, flags, stream, std::move(payload)});
    return bytes;
}

inline Bytes bigEndian32(std::uint32_t value) {
    Bytes bytes;
    appendBigEndian32(bytes, value);
    return bytes;
}

inline Bytes settingOf(std::uint8_t setting, std::uint32_t value) {
    Bytes bytes{0, setting};
    append(bytes, bigEndian32(value));
    return bytes;
}

// The preface and a SETTINGS frame with these settings.
inline Bytes greeting(const Bytes& settings = {}) {
    constexpr std::string_view preface = NGHTTP2_CLIENT_MAGIC;
    Bytes bytes(preface.begin(), preface.end());
    append(bytes, frameBytes(NGHTTP2_SETTINGS, 0, 0, settings));
    return bytes;
}

// The header block of a request as the receiver writes it: POST, http, path, authority, content type and te.
inline Bytes requestBlock(std::string_view path = "/ptsl.PTSL/SendGrpcRequest",
                          std::string_view contentType = "application/grpc") {
    Bytes block{0x83, 0x86};
    const auto literal = [&](std::initializer_list<std::uint8_t> name, std::string_view value) {
        block.insert(block.end(), name);
        block.push_back(static_cast<std::uint8_t>(value.size()));
        block.insert(block.end(), value.begin(), value.end());
    };
    literal({0x04}, path);
    literal({0x01}, "127.0.0.1:31416");
    literal({0x0F, 0x10}, contentType);
    literal({0x00, 0x02, 't', 'e'}, "trailers");
    return block;
}

inline Bytes grpcMessage(std::string_view message) {
    Bytes bytes{0};
    append(bytes, bigEndian32(static_cast<std::uint32_t>(message.size())));
    bytes.insert(bytes.end(), message.begin(), message.end());
    return bytes;
}

// A whole call: one HEADERS and one DATA frame.
inline Bytes callBytes(std::uint32_t stream, std::string_view message, const Bytes& block = requestBlock()) {
    Bytes bytes = frameBytes(NGHTTP2_HEADERS, NGHTTP2_FLAG_END_HEADERS, stream, block);
    append(bytes, frameBytes(NGHTTP2_DATA, NGHTTP2_FLAG_END_STREAM, stream, grpcMessage(message)));
    return bytes;
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

// Describes the frames of a service on one connection by type, stream, flags if any, and content: "DATA 1 (7)",
// "HEADERS 1 +5 grpc-status=0", "GOAWAY 0000000000000001".
class Listener {
public:
    Listener() { nghttp2_hd_inflate_new(&inflater); }
    ~Listener() { nghttp2_hd_inflate_del(inflater); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    std::vector<std::string> told(const Bytes& bytes) {
        cutter.add(bytes);
        std::vector<std::string> texts;
        while (const auto frame = cutter.next())
            texts.push_back(told(*frame));
        return texts;
    }

private:
    std::string told(const Frame& frame) {
        constexpr std::array<std::string_view, 10> names{"DATA",          "HEADERS",      "PRIORITY", "RST_STREAM",
                                                         "SETTINGS",      "PUSH_PROMISE", "PING",     "GOAWAY",
                                                         "WINDOW_UPDATE", "CONTINUATION"};
        std::string text(frame.type < names.size() ? names[frame.type] : "UNKNOWN");
        if (frame.stream != 0) text += " " + std::to_string(frame.stream);
        if (frame.flags != 0) text += " +" + std::to_string(frame.flags);
        if (frame.type == NGHTTP2_DATA) return text + " (" + std::to_string(frame.payload.size()) + ")";
        if (frame.type == NGHTTP2_HEADERS) return text + headersIn(frame.payload);
        return frame.payload.empty() ? text : text + " " + hexOf(frame.payload);
    }

    std::string headersIn(ByteView block) {
        std::string text;
        for (;;) {
            nghttp2_nv header{};
            int flags = 0;
            const ssize_t used = nghttp2_hd_inflate_hd2(inflater, &header, &flags, block.data(), block.size(), 1);
            if (used < 0) return text + " unreadable";
            block = block.subspan(static_cast<std::size_t>(used));
            if ((flags & NGHTTP2_HD_INFLATE_EMIT) != 0) {
                text += " " + std::string(header.name, header.name + header.namelen);
                text += "=" + std::string(header.value, header.value + header.valuelen);
            }
            if ((flags & NGHTTP2_HD_INFLATE_FINAL) != 0) break;
        }
        nghttp2_hd_inflate_end_headers(inflater);
        return text;
    }

    FrameCutter cutter;
    nghttp2_hd_inflater* inflater = nullptr;
};

} // namespace lumbrine::wire
