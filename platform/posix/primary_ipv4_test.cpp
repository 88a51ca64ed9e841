#include "platform/posix/primary_ipv4.h"

#include <algorithm>

namespace lumbrine {
namespace {

IPv4Interface network(std::string name, std::string address) {
    return {std::move(name), std::move(address), true, false};
}

TEST(PrimaryIPv4, IsAbsentWithoutInterfaces) {
    EXPECT_EQ(choosePrimaryIPv4({}), std::nullopt);
}

TEST(PrimaryIPv4, IsTheFirstWhenNoneHasAUsualName) {
    EXPECT_EQ(choosePrimaryIPv4({network("wlan0", "192.168.1.7"), network("eth0", "10.0.0.2")}), "192.168.1.7");
}

TEST(PrimaryIPv4, PrefersEn0OverEarlierOnes) {
    EXPECT_EQ(choosePrimaryIPv4({network("eth0", "10.0.0.2"), network("en0", "192.168.1.7")}), "192.168.1.7");
}

TEST(PrimaryIPv4, PrefersEn1OverEarlierOnes) {
    EXPECT_EQ(choosePrimaryIPv4({network("bridge0", "10.0.0.2"), network("en1", "192.168.1.8")}), "192.168.1.8");
}

TEST(PrimaryIPv4, TakesTheEarlierOfEn0AndEn1) {
    EXPECT_EQ(choosePrimaryIPv4({network("en1", "192.168.1.8"), network("en0", "192.168.1.7")}), "192.168.1.8");
}

TEST(PrimaryIPv4, DoesNotTakeANameThatOnlyBeginsAlike) {
    EXPECT_EQ(choosePrimaryIPv4({network("eth0", "10.0.0.2"), network("en01", "192.168.1.7")}), "10.0.0.2");
}

TEST(PrimaryIPv4, PassesOverLoopbackAndWhatIsDown) {
    const IPv4Interface loopback{"lo", "127.0.0.1", true, true};
    const IPv4Interface down{"en0", "192.168.1.7", false, false};
    EXPECT_EQ(choosePrimaryIPv4({loopback, down}), std::nullopt);
    EXPECT_EQ(choosePrimaryIPv4({loopback, down, network("eth0", "10.0.0.2")}), "10.0.0.2");
}

TEST(ReachableIPv4, AreAllButLoopbackAndWhatIsDown) {
    EXPECT_EQ(reachableIPv4({{"lo", "127.0.0.1", true, true},
                             {"en0", "192.168.1.7", false, false},
                             network("eth0", "10.0.0.2"),
                             network("eth1", "172.16.0.2")}),
              (std::vector<std::string>{"10.0.0.2", "172.16.0.2"}));
}

TEST(PrimaryIPv4, FindsTheLoopbackInterfaceOfThisComputer) {
    const std::vector<IPv4Interface> interfaces = listIPv4Interfaces();
    EXPECT_TRUE(std::ranges::any_of(interfaces, [](const IPv4Interface& interface) {
        return interface.address == "127.0.0.1" && interface.loopback && interface.up;
    }));
}

} // namespace
} // namespace lumbrine
