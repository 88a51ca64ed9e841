// SIGINT and SIGTERM end lumbrine-headless in order and at once, whatever it is doing.
#include "tests/end_to_end/client_socket.h"
#include "tests/end_to_end/deadlines.h"
#include "tests/end_to_end/host_ports.h"
#include "tests/end_to_end/receiver_process.h"
#include "tests/interop/private_jack.h"

#include <csignal>
#include <cstdio>

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

INSTANTIATE_TEST_SUITE_P(Signals, HeadlessEnd, testing::Values(SIGINT, SIGTERM),
                         [](const auto& signal) { return signal.param == SIGINT ? "OnSIGINT" : "OnSIGTERM"; });

} // namespace
} // namespace lumbrine::end_to_end
