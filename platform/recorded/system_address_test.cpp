#include "platform/recorded/system_address.h"

#include <netinet/in.h>

#include <cstring>

namespace lumbrine {
namespace {

using blackbox::NumericAddress;

constexpr std::array<std::uint8_t, 16> mapped(std::uint8_t a, std::uint8_t b, std::uint8_t c, std::uint8_t d) {
    return {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF, a, b, c, d};
}

template <typename System>
PeerAddress packed(const System& system) {
    PeerAddress address;
    std::memcpy(address.storage.data(), &system, sizeof system);
    address.length = sizeof system;
    return address;
}

TEST(SystemAddress, OfADualStackSocketIsTheMappedOne) {
    constexpr auto host = mapped(192, 168, 1, 20);
    sockaddr_in6 system{};
    system.sin6_family = AF_INET6;
    system.sin6_port = htons(52701);
    std::memcpy(&system.sin6_addr, host.data(), host.size());
    EXPECT_EQ(systemAddress(packed(system)), (NumericAddress{.host = host, .port = 52701}));
}

TEST(SystemAddress, OfAnIPv4SocketIsTheMappedOne) {
    sockaddr_in system{};
    system.sin_family = AF_INET;
    system.sin_port = htons(7);
    system.sin_addr.s_addr = htonl(0x0A000001);
    EXPECT_EQ(systemAddress(packed(system)), (NumericAddress{.host = mapped(10, 0, 0, 1), .port = 7}));
}

TEST(SystemAddress, OfAnythingElseIsNone) {
    PeerAddress address;
    EXPECT_EQ(systemAddress(address), NumericAddress{});
    address.length = 3;
    EXPECT_EQ(systemAddress(address), NumericAddress{});
    sockaddr_in6 cut{};
    cut.sin6_family = AF_INET6;
    cut.sin6_port = 5;
    address = packed(cut);
    address.length = 8;
    EXPECT_EQ(systemAddress(address), NumericAddress{});
}

} // namespace
} // namespace lumbrine
