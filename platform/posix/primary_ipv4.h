// Which of this computer's addresses a phone on the same network should be told.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace lumbrine {

// One IPv4 address of one interface; an interface with several addresses appears once for each.
struct IPv4Interface {
    std::string name;
    std::string address; // numeric
    bool up = false;
    bool loopback = false;
};

// Of those that are up and not loopback, the first one named "en0" or "en1", else the first. Absent when none is left.
std::optional<std::string> choosePrimaryIPv4(const std::vector<IPv4Interface>& interfaces);

// The interfaces of this computer in the system's order; empty when the system does not tell.
std::vector<IPv4Interface> listIPv4Interfaces();

} // namespace lumbrine
