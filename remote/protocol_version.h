// The first byte of every datagram in both directions.
#pragma once

#include <cstdint>

namespace lumbrine::remote {

constexpr std::uint8_t protocolVersion = 0x01;

} // namespace lumbrine::remote
