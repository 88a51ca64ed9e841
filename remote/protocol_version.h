#pragma once

#include <cstdint>

namespace lumbrine::remote {

// The first byte of every datagram, in both directions.
constexpr std::uint8_t protocolVersion = 0x01;

} // namespace lumbrine::remote
