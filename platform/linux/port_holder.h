// Which program has a port of this computer.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace lumbrine {

// "lumbrine (process 1234)". Absent when nobody has the port, and when the system does not tell: only root sees the
// programs of other users.
std::optional<std::string> holderOfUDPPort(std::uint16_t port);

// Whether a program accepts connections on a TCP port, and which: "lumbrine-web (process 1234)".
bool isListenedTo(std::uint16_t tcpPort);
std::optional<std::string> listenerOnTCPPort(std::uint16_t port);

// For tests: the number of the socket that has the port in this state, in a table as in /proc/net/udp6. Absent when
// none has.
inline constexpr std::string_view unconnected = "07"; // of UDP sockets
inline constexpr std::string_view listening = "0A";   // of TCP sockets
std::optional<std::string> socketOfPort(const std::string& table, std::uint16_t port, std::string_view state);

} // namespace lumbrine
