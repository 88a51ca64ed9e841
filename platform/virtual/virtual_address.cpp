#include "platform/virtual/virtual_address.h"

#include <algorithm>
#include <string_view>

namespace lumbrine {

namespace {

constexpr std::string_view mappedPrefix = "::ffff:";
constexpr std::size_t portSize = 2;

bool isIPv4(std::string_view text) {
    int parts = 0;
    while (parts < 4) {
        std::size_t digits = 0;
        int value = 0;
        while (digits < text.size() && digits < 3 && text[digits] >= '0' && text[digits] <= '9')
            value = value * 10 + (text[digits++] - '0');
        if (digits == 0 || value > 255) return false;
        text.remove_prefix(digits);
        if (++parts == 4) return text.empty();
        if (!text.starts_with('.')) return false;
        text.remove_prefix(1);
    }
    return false;
}

bool isIPv6(std::string_view text) {
    return text.contains(':') && text.find_first_not_of("0123456789abcdefABCDEF:.%") == std::string_view::npos;
}

} // namespace

std::optional<std::string> dualStackForm(const std::string& host) {
    if (isIPv4(host)) return std::string(mappedPrefix) + host;
    if (isIPv6(host)) return host;
    return std::nullopt;
}

bool isLoopback(const std::string& host) {
    return host == "::1" || host == std::string(mappedPrefix) + "127.0.0.1";
}

PeerAddress pack(const VirtualAddress& address) {
    PeerAddress packed;
    packed.storage[0] = static_cast<std::uint8_t>(address.port >> 8);
    packed.storage[1] = static_cast<std::uint8_t>(address.port);
    const std::size_t size = std::min(address.host.size(), packed.storage.size() - portSize);
    std::copy_n(address.host.begin(), size, packed.storage.begin() + portSize);
    packed.length = static_cast<std::uint32_t>(portSize + size);
    return packed;
}

std::optional<VirtualAddress> unpack(const PeerAddress& address) {
    if (address.length <= portSize || address.length > address.storage.size()) return std::nullopt;
    const auto* bytes = address.storage.data();
    return VirtualAddress{std::string(bytes + portSize, bytes + address.length),
                          static_cast<std::uint16_t>(bytes[0] << 8 | bytes[1])};
}

void setSpokenTo(PeerAddress& peer, const std::string& host) {
    peer.spokenTo = {};
    std::copy_n(host.begin(), std::min(host.size(), peer.spokenTo.size()), peer.spokenTo.begin());
}

std::string spokenTo(const PeerAddress& peer) {
    return {peer.spokenTo.begin(), std::ranges::find(peer.spokenTo, 0)};
}

} // namespace lumbrine
