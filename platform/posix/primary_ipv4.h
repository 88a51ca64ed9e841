// Chooses the address of this computer that a phone on the same network can reach.
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

// Of the addresses that are up and not loopback: the first one on "en0" or "en1" (the usual Wi-Fi and Ethernet of a
// Mac), else the first of all. Absent when there is none.
std::optional<std::string> choosePrimaryIPv4(const std::vector<IPv4Interface>& interfaces);

// All addresses that are up and not loopback.
std::vector<std::string> reachableIPv4(const std::vector<IPv4Interface>& interfaces);

// The interfaces of this computer in the system's order. Empty when the system cannot list them.
std::vector<IPv4Interface> listIPv4Interfaces();

} // namespace lumbrine
