// The system's messages about changed addresses of this computer, which every OS sends in a form of its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace lumbrine {

// Room for any of these messages.
inline constexpr std::size_t longestAddressEvent = 8192;

// Opens a socket that receives one or several messages with each read. Returns its descriptor, or a negative errno
// value.
int openAddressEvents();

// True when what one read has brought, and possibly cut, tells of an address that came or went. `received` begins at a
// multiple of 8 bytes.
bool tellsOfAddresses(std::span<const std::uint8_t> received);

} // namespace lumbrine
