// Finding services through a real Avahi daemon.
#include "platform/linux/avahi_browser.h"
#include "tests/interop/private_avahi.h"
#include "tests/interop/waiting.h"

#include <mutex>

namespace lumbrine::interop {
namespace {

constexpr const char* browsedType = "_lumbrine._udp";

// The services a search has told, in order.
class Findings {
public:
    std::function<void(const FoundService&)> asReceiver() {
        return [this](const FoundService& one) {
            const std::lock_guard lock(mutex);
            services.push_back(one);
        };
    }

    std::vector<FoundService> waitFor(std::size_t count) {
        waitUntil([&] { return size() >= count; });
        const std::lock_guard lock(mutex);
        return services;
    }

    std::size_t size() {
        const std::lock_guard lock(mutex);
        return services.size();
    }

private:
    std::mutex mutex;
    std::vector<FoundService> services;
};

class AvahiBrowsing : public testing::Test {
protected:
    void SetUp() override {
        if (!PrivateAvahi::possible()) GTEST_SKIP() << "the Avahi daemon runs as root only";
    }

    AvahiBrowser browser;
    Findings findings;
};

TEST_F(AvahiBrowsing, IsNotPossibleWithoutADaemonOrABus) {
    PrivateAvahi avahi({.bus = false, .daemon = false});
    EXPECT_EQ(browser.browse("_lumbrine._udp.", findings.asReceiver()), nullptr);
    avahi.startBus();
    EXPECT_EQ(browser.browse("_lumbrine._udp.", findings.asReceiver()), nullptr);
}

TEST_F(AvahiBrowsing, FindsAServiceOnceWithAnIPv4Address) {
    const PrivateAvahi avahi;
    const auto search = browser.browse("_lumbrine._udp.", findings.asReceiver());
    ASSERT_NE(search, nullptr);
    const auto publisher = avahi.publish("Anna's Studio", browsedType, 5000);
    const std::vector<FoundService> found = findings.waitFor(1);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].name, "Anna's Studio");
    EXPECT_EQ(found[0].host, "127.0.0.1");
    EXPECT_EQ(found[0].port, 5000);
    EXPECT_TRUE(holdsFor(std::chrono::milliseconds(300), [&] { return findings.size() == 1; }));
}

TEST_F(AvahiBrowsing, FindsAServiceAgainAfterItWasGoneAndAfterTheDaemonWas) {
    PrivateAvahi avahi;
    const auto search = browser.browse("_lumbrine._udp.", findings.asReceiver());
    ASSERT_NE(search, nullptr);
    auto publisher = avahi.publish("Studio", browsedType, 5000);
    ASSERT_EQ(findings.waitFor(1).size(), 1U);
    publisher.reset();
    ASSERT_TRUE(waitUntil([&] { return avahi.browse(browsedType).empty(); }));
    publisher = avahi.publish("Studio", browsedType, 5001);
    const std::vector<FoundService> again = findings.waitFor(2);
    ASSERT_EQ(again.size(), 2U);
    EXPECT_EQ(again[1].port, 5001);

    publisher.reset();
    avahi.killDaemon();
    avahi.startDaemon();
    publisher = avahi.publish("Studio", browsedType, 5002);
    const std::vector<FoundService> last = findings.waitFor(3);
    ASSERT_EQ(last.size(), 3U);
    EXPECT_EQ(last[2].port, 5002);
}

TEST(AvahiOutput, IsReadWithItsEscapesUndone) {
    const std::vector<BrowsedService> services =
        resolvedServices("+;lo;IPv4;Studio;_lumbrine._udp;local\n"
                         "=;lo;IPv4;Anna\\039s\\032Studio;_lumbrine._udp;local;host.local;127.0.0.1;52700;\"a=b\"\n");
    ASSERT_EQ(services.size(), 1U);
    EXPECT_EQ(services[0].name, "Anna's Studio");
    EXPECT_EQ(services[0].address, "127.0.0.1");
    EXPECT_EQ(services[0].port, 52700);
}

} // namespace
} // namespace lumbrine::interop
