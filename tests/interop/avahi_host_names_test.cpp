// The name of a host on the network, by a real Avahi daemon.
#include "platform/linux/avahi_host_names.h"
#include "tests/interop/private_avahi.h"
#include "tests/interop/waiting.h"

#include <mutex>

namespace lumbrine::interop {
namespace {

TEST(AvahiHostNames, AreToldByTheirHosts) {
    if (!PrivateAvahi::possible()) GTEST_SKIP() << "the Avahi daemon runs as root only";
    const PrivateAvahi avahi;
    const ChildProcess phone({"avahi-publish", "-a", "Annas-iPhone.local", "127.0.0.9"});
    ASSERT_TRUE(waitUntil([&] { return phone.output().find("Established") != std::string::npos; })) << phone.output();
    std::mutex mutex;
    std::vector<std::string> names;
    AvahiHostNames hosts;
    const auto search = hosts.find("127.0.0.9", [&](const std::string& name) {
        const std::lock_guard lock(mutex);
        names.push_back(name);
    });
    EXPECT_TRUE(waitUntil([&] {
        const std::lock_guard lock(mutex);
        return !names.empty();
    }));
    const std::lock_guard lock(mutex);
    EXPECT_EQ(names, std::vector<std::string>{"Annas-iPhone"});
    EXPECT_EQ(hosts.find("no address", {}), nullptr);
}

} // namespace
} // namespace lumbrine::interop
