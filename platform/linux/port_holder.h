// Which program has a UDP port of this computer.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace lumbrine {

// "lumbrine (process 1234)". Absent when nobody has the port, and when the system does not tell: only root sees the
// programs of other users.
std::optional<std::string> holderOfUDPPort(std::uint16_t port);

// For tests: the number of the socket that has the port, in a table as in /proc/net/udp6. Absent when none has.
std::optional<std::string> socketOfPort(const std::string& table, std::uint16_t port);

} // namespace lumbrine
