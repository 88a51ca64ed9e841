#include "platform/posix/primary_ipv4.h"

#include <ifaddrs.h>
#include <net/if.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <memory>

namespace lumbrine {

namespace {

std::string numericHost(const sockaddr& address) {
    std::array<char, 1025> host{};
    const int failure = ::getnameinfo(&address, sizeof(sockaddr_in), host.data(), static_cast<socklen_t>(host.size()),
                                      nullptr, 0, NI_NUMERICHOST);
    return failure == 0 ? host.data() : "";
}

bool isCandidate(const IPv4Interface& interface) {
    return interface.up && !interface.loopback;
}

bool isUsualNetwork(const IPv4Interface& interface) {
    return isCandidate(interface) && (interface.name == "en0" || interface.name == "en1");
}

} // namespace

std::optional<std::string> choosePrimaryIPv4(const std::vector<IPv4Interface>& interfaces) {
    auto chosen = std::ranges::find_if(interfaces, isUsualNetwork);
    if (chosen == interfaces.end()) chosen = std::ranges::find_if(interfaces, isCandidate);
    if (chosen == interfaces.end()) return std::nullopt;
    return chosen->address;
}

std::vector<std::string> reachableIPv4(const std::vector<IPv4Interface>& interfaces) {
    std::vector<std::string> addresses;
    for (const IPv4Interface& interface : interfaces)
        if (isCandidate(interface)) addresses.push_back(interface.address);
    return addresses;
}

std::vector<IPv4Interface> listIPv4Interfaces() {
    ifaddrs* first = nullptr;
    if (::getifaddrs(&first) != 0) return {};
    const std::unique_ptr<ifaddrs, decltype(&::freeifaddrs)> owner(first, &::freeifaddrs);

    std::vector<IPv4Interface> interfaces;
    for (const ifaddrs* entry = first; entry != nullptr; entry = entry->ifa_next) {
        if (entry->ifa_addr == nullptr || entry->ifa_addr->sa_family != AF_INET) continue;
        std::string address = numericHost(*entry->ifa_addr);
        if (address.empty()) continue;
        interfaces.push_back({entry->ifa_name, std::move(address), (entry->ifa_flags & IFF_UP) != 0,
                              (entry->ifa_flags & IFF_LOOPBACK) != 0});
    }
    return interfaces;
}

} // namespace lumbrine
