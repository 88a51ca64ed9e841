// For tests: HTTP/2 frames and gRPC bodies of a service, byte by byte and independent of the link's own code.
#pragma once

#include "base/bytes.h"

#include <cstdint>
#include <initializer_list>

namespace lumbrine::service {

inline Bytes joined(std::initializer_list<Bytes> parts) {
    Bytes all;
    for (const Bytes& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

inline Bytes number(std::uint32_t value) {
    return {static_cast<std::uint8_t>(value >> 24), static_cast<std::uint8_t>(value >> 16),
            static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value)};
}

inline Bytes frame(std::uint8_t type, std::uint8_t flags, std::uint32_t stream, const Bytes& payload = {}) {
    Bytes length = number(static_cast<std::uint32_t>(payload.size()));
    length.erase(length.begin());
    return joined({length, {type, flags}, number(stream), payload});
}

inline Bytes settings() {
    return frame(4, 0, 0, {0x00, 0x04, 0x00, 0x3F, 0xFF, 0xFF}); // a window of 4,194,303
}

inline Bytes settingsAck() {
    return frame(4, 1, 0);
}

inline Bytes ping(std::uint8_t mark, std::uint8_t flags = 0) {
    return frame(6, flags, 0, Bytes(8, mark));
}

inline Bytes windowUpdate(std::uint32_t stream, std::uint32_t increment) {
    return frame(8, 0, stream, number(increment));
}

inline Bytes goaway() {
    return frame(7, 0, 0, Bytes(8, 0));
}

inline Bytes rstStream(std::uint32_t stream) {
    return frame(3, 0, stream, number(8));
}

// ":status: 200" is entry 8 of the static table.
inline Bytes headers(std::uint32_t stream) {
    return frame(1, 0x04, stream, {0x88});
}

// "grpc-status: 0", a literal.
inline Bytes trailers(std::uint32_t stream) {
    return frame(1, 0x05, stream, {0x00, 0x0B, 'g', 'r', 'p', 'c', '-', 's', 't', 'a', 't', 'u', 's', 0x01, '0'});
}

inline Bytes data(std::uint32_t stream, const Bytes& payload, std::uint8_t flags = 0) {
    return frame(0, flags, stream, payload);
}

// A message with its gRPC prefix.
inline Bytes body(const Bytes& message) {
    return joined({{0}, number(static_cast<std::uint32_t>(message.size())), message});
}

// A whole response as gRPC servers send it: headers, data, trailers.
inline Bytes response(std::uint32_t stream, const Bytes& message) {
    return joined({headers(stream), data(stream, body(message)), trailers(stream)});
}

} // namespace lumbrine::service
