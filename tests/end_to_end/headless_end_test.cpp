// SIGINT and SIGTERM end lumbrine-headless in order and at once, whatever it is doing.
#include "tests/end_to_end/client_socket.h"
#include "tests/end_to_end/deadlines.h"
#include "tests/end_to_end/host_ports.h"
#include "tests/end_to_end/receiver_process.h"
#include "tests/interop/private_jack.h"

#include <csignal>
#include <cstdio>
#include <set>
#include <utility>

namespace lumbrine::end_to_end {
namespace {

using interop::PrivateJack;
using interop::waitUntil;
using std::chrono::milliseconds;

class HeadlessEnd : public testing::TestWithParam<int> {
protected:
    // How long it takes to end; with the right status, or the test has failed.
    milliseconds end(ReceiverProcess& receiver) {
        const auto start = std::chrono::steady_clock::now();
        receiver.process.signal(GetParam());
        EXPECT_EQ(receiver.process.wait(interop::patience), 0) << receiver.process.output();
        return std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - start);
    }

    void expectItEndsAtOnce(const std::function<void(ReceiverProcess&)>& whileItDoes) {
        ReceiverProcess receiver;
        whileItDoes(receiver);
        const milliseconds taken = end(receiver);
        std::printf("ended after %lld ms\n", static_cast<long long>(taken.count()));
        EXPECT_LE(taken, ending);
    }

    PrivateJack jack;
};

TEST_P(HeadlessEnd, ComesAtOnceWhileNothingHappens) {
    expectItEndsAtOnce([](ReceiverProcess&) {});
}

TEST_P(HeadlessEnd, ComesAtOnceDuringAScanForAClient) {
    std::optional<ClientSocket> client;
    expectItEndsAtOnce([&](ReceiverProcess& receiver) {
        client.emplace(receiver.port);
        HostPorts host("Lumbrine");
        const auto scans = [&] {
            host.send(Bytes{0x90, 0x00, 0x00});
            client->send(Bytes{0x01, 0x0C});
            return receiver.process.output().find("▶ Scanning all tracks") != std::string::npos;
        };
        ASSERT_TRUE(waitUntil(scans)) << receiver.process.output();
    });
}

// The switches and touches that these events leave down, as zone and port.
std::set<std::pair<int, int>> downAfter(const std::vector<HostPorts::Event>& events) {
    std::set<std::pair<int, int>> down;
    int zone = 0;
    for (const HostPorts::Event& event : events) {
        if (event.bytes.size() != 3 || event.bytes[0] != 0xB0) continue;
        if (event.bytes[1] == 0x0F) zone = event.bytes[2];
        if (event.bytes[1] != 0x2F) continue;
        const std::pair place{zone, event.bytes[2] & 0x0F};
        if ((event.bytes[2] & 0x40) != 0) {
            down.insert(place);
        } else {
            down.erase(place);
        }
    }
    return down;
}

TEST_P(HeadlessEnd, LeavesNothingDownInProTools) {
    ReceiverProcess receiver;
    const HostPorts a("Lumbrine"), b("Lumbrine B");
    ClientSocket client(receiver.port);
    client.send(Bytes{0x01, 0x02, 0x03}); // touch strip 3
    client.send(Bytes{0x01, 0x02, 0x0C}); // touch strip 12
    ASSERT_TRUE(a.hears({{0xB0, 0x0F, 0x03}, {0xB0, 0x2F, 0x40}}));
    ASSERT_TRUE(b.hears({{0xB0, 0x0F, 0x04}, {0xB0, 0x2F, 0x40}}));
    client.send(Bytes{0x01, 0x04, 0x02}); // mute strip 2
    ASSERT_TRUE(a.hears({{0xB0, 0x0F, 0x02}, {0xB0, 0x2F, 0x42}}));
    end(receiver);
    EXPECT_EQ(downAfter(a.events()), (std::set<std::pair<int, int>>{})) << receiver.process.output();
    EXPECT_EQ(downAfter(b.events()), (std::set<std::pair<int, int>>{})) << receiver.process.output();
}

INSTANTIATE_TEST_SUITE_P(Signals, HeadlessEnd, testing::Values(SIGINT, SIGTERM),
                         [](const auto& signal) { return signal.param == SIGINT ? "OnSIGINT" : "OnSIGTERM"; });

} // namespace
} // namespace lumbrine::end_to_end
