// Announcing services through a real Avahi daemon, which may come late, go and come back.
#include "platform/linux/avahi_advertiser.h"
#include "tests/interop/private_avahi.h"
#include "tests/interop/waiting.h"

namespace lumbrine::interop {
namespace {

constexpr const char* browsedType = "_lumbrine._udp";

AdvertisedService service(const std::string& name, std::uint16_t port = 52700) {
    return {"local.", "_lumbrine._udp.", name, port};
}

class AvahiAdvertising : public testing::Test {
protected:
    void SetUp() override {
        if (!PrivateAvahi::possible()) GTEST_SKIP() << "the Avahi daemon runs as root only";
    }

    AvahiAdvertiser advertiser;
};

TEST_F(AvahiAdvertising, PublishesAServiceWithItsNameAndPort) {
    const PrivateAvahi avahi;
    const auto advertisement = advertiser.publish(service("Anna's Studio"));
    const auto found = avahi.find(browsedType, "Anna's Studio");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->port, 52700);
    EXPECT_EQ(found->address, "127.0.0.1");
}

TEST_F(AvahiAdvertising, TakesTheNextNameWhenItsOwnIsTakenAndWithdrawsItAtTheEnd) {
    const PrivateAvahi avahi;
    const auto other = avahi.publish("Studio", browsedType, 1111);
    auto advertisement = advertiser.publish(service("Studio", 2222));
    const auto found = avahi.find(browsedType, "Studio #2");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->port, 2222);

    advertisement.reset();
    EXPECT_TRUE(waitUntil([&] { return avahi.browse(browsedType).size() == 1; }));
}

TEST_F(AvahiAdvertising, PublishesAgainAfterTheDaemonWasKilled) {
    PrivateAvahi avahi;
    const auto advertisement = advertiser.publish(service("Studio"));
    ASSERT_TRUE(avahi.find(browsedType, "Studio"));
    avahi.killDaemon();
    avahi.startDaemon();
    EXPECT_TRUE(avahi.find(browsedType, "Studio"));
}

TEST_F(AvahiAdvertising, PublishesWhenTheDaemonComesLater) {
    PrivateAvahi avahi({.bus = true, .daemon = false});
    const auto advertisement = advertiser.publish(service("Studio"));
    avahi.startDaemon();
    EXPECT_TRUE(avahi.find(browsedType, "Studio"));
}

TEST_F(AvahiAdvertising, PublishesWhenTheMessageBusComesLaterAndAfterItWasKilled) {
    PrivateAvahi avahi({.bus = false, .daemon = false});
    const auto advertisement = advertiser.publish(service("Studio"));
    avahi.startBus();
    avahi.startDaemon();
    ASSERT_TRUE(avahi.find(browsedType, "Studio"));

    avahi.killDaemon();
    avahi.killBus();
    avahi.startBus();
    avahi.startDaemon();
    EXPECT_TRUE(avahi.find(browsedType, "Studio"));
}

TEST_F(AvahiAdvertising, EndsAtOnceWithoutAMessageBus) {
    const PrivateAvahi avahi({.bus = false, .daemon = false});
    advertiser.publish(service("Studio")).reset();
}

} // namespace
} // namespace lumbrine::interop
