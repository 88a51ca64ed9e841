// Converts the names in platform/api/service_discovery.h to the form that Avahi accepts.
#pragma once

#include <string>
#include <string_view>

namespace lumbrine {

// Removes the dot at the end of a type or a domain: "_lumbrine._udp." becomes "_lumbrine._udp".
std::string withoutFinalDot(std::string_view name);

// Cuts a service name to the longest run of whole characters that fits 63 bytes, the limit of a DNS label.
std::string fittingServiceName(std::string_view name);

} // namespace lumbrine
