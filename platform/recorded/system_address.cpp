#include "platform/recorded/system_address.h"

#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <cstring>

namespace lumbrine {

namespace {

blackbox::NumericAddress mapped(const sockaddr_in& address) {
    blackbox::NumericAddress numeric;
    numeric.host[10] = 0xFF;
    numeric.host[11] = 0xFF;
    std::memcpy(&numeric.host[12], &address.sin_addr, sizeof address.sin_addr);
    numeric.port = ntohs(address.sin_port);
    return numeric;
}

} // namespace

blackbox::NumericAddress systemAddress(const PeerAddress& peer) {
    sockaddr_storage storage{};
    std::memcpy(&storage, peer.storage.data(), std::min<std::size_t>(peer.length, sizeof storage));
    if (storage.ss_family == AF_INET && peer.length >= sizeof(sockaddr_in))
        return mapped(reinterpret_cast<const sockaddr_in&>(storage));
    blackbox::NumericAddress numeric;
    if (storage.ss_family != AF_INET6 || peer.length < sizeof(sockaddr_in6)) return numeric;
    const auto& address = reinterpret_cast<const sockaddr_in6&>(storage);
    std::memcpy(numeric.host.data(), &address.sin6_addr, numeric.host.size());
    numeric.port = ntohs(address.sin6_port);
    return numeric;
}

} // namespace lumbrine
