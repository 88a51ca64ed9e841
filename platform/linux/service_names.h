// From the names of a service as the rest of the program has them to what Avahi takes.
#pragma once

#include <string>
#include <string_view>

namespace lumbrine {

// A type or a domain without the dot at its end: "_lumbrine._udp." becomes "_lumbrine._udp".
std::string withoutFinalDot(std::string_view name);

// A service's name may have 63 bytes: whole characters up to there.
std::string fittingServiceName(std::string_view name);

} // namespace lumbrine
