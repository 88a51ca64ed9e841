#include "platform/virtual/virtual_network.h"

#include <cerrno>

namespace lumbrine {
namespace {

using namespace std::chrono_literals;

constexpr std::uint16_t serverPort = 52700;

class VirtualNetworkTest : public testing::Test {
protected:
    // Receives until the socket is shut down.
    void serve(int fd, std::size_t bufferSize = 2048) {
        server = runtime.startThread("server", [this, fd, bufferSize] {
            Bytes buffer(bufferSize);
            PeerAddress from;
            for (;;) {
                const int size = desktop.receive(fd, buffer, from);
                if (size < 0) return;
                std::string host, port;
                desktop.name(from, host, port);
                received.push_back(Bytes(buffer.begin(), buffer.begin() + size));
                peers.push_back(host + ":" + port);
                arrivals.push_back(runtime.now().time_since_epoch());
            }
        });
    }

    int bound(DatagramSockets& host, std::uint16_t port) {
        const int fd = host.open();
        EXPECT_EQ(host.bind(fd, port), 0);
        return fd;
    }

    void sendFromPhone(const Bytes& bytes, const std::string& to = "192.168.1.7") {
        PeerAddress address;
        ASSERT_TRUE(phone.resolve(to, serverPort, address));
        ASSERT_EQ(phone.send(phoneSocket, bytes, address), static_cast<int>(bytes.size()));
    }

    void end(int fd) {
        desktop.shutDown(fd);
        server.reset();
        desktop.close(fd);
    }

    VirtualRuntime runtime;
    VirtualNetwork network{runtime};
    DatagramSockets& desktop = network.host("192.168.1.7");
    DatagramSockets& phone = network.host("192.168.1.20");
    int phoneSocket = bound(phone, 50000);
    std::vector<Bytes> received;
    std::vector<std::string> peers;
    std::vector<Duration> arrivals;
    std::unique_ptr<Thread> server;
};

TEST_F(VirtualNetworkTest, CarriesADatagramAndNamesTheSenderInMappedForm) {
    const int fd = bound(desktop, serverPort);
    serve(fd);
    sendFromPhone({1, 2, 3});
    sendFromPhone({});
    runtime.runUntilIdle();
    EXPECT_EQ(received, (std::vector<Bytes>{{1, 2, 3}, {}}));
    EXPECT_EQ(peers.at(0), "::ffff:192.168.1.20:50000");
    end(fd);
}

TEST_F(VirtualNetworkTest, WakesAWaitingReceiverWhenTheSocketIsShutDown) {
    const int fd = bound(desktop, serverPort);
    serve(fd);
    runtime.runFor(1s);
    end(fd);
    EXPECT_EQ(runtime.now(), TimePoint{1s});
}

TEST_F(VirtualNetworkTest, SendsAsBeforeOnASocketThatIsShutDown) {
    const int fd = bound(desktop, serverPort);
    serve(fd);
    phone.shutDown(phoneSocket);
    sendFromPhone({1});
    runtime.runUntilIdle();
    EXPECT_EQ(received, (std::vector<Bytes>{{1}}));
    end(fd);
}

TEST_F(VirtualNetworkTest, ReachesTheSameMachineByTheLoopbackAddress) {
    const int fd = bound(desktop, serverPort);
    serve(fd);
    const int other = desktop.open();
    PeerAddress address;
    ASSERT_TRUE(desktop.resolve("localhost", serverPort, address));
    EXPECT_EQ(desktop.send(other, Bytes{9}, address), 1);
    runtime.runUntilIdle();
    EXPECT_EQ(received, (std::vector<Bytes>{{9}}));
    EXPECT_EQ(peers.at(0), "::ffff:127.0.0.1:" + std::to_string(desktop.localPort(other)));
    end(fd);
}

TEST_F(VirtualNetworkTest, AnswersFromTheAddressThatADatagramWasSentTo) {
    network.addAddress("192.168.1.7", "10.0.0.7");
    const int fd = bound(desktop, serverPort);
    server = runtime.startThread("server", [&] {
        Bytes buffer(16);
        PeerAddress from;
        while (desktop.receive(fd, buffer, from) >= 0)
            desktop.send(fd, Bytes{7}, from);
    });
    std::vector<std::string> answeredBy;
    const auto answers = runtime.startThread("phone", [&] {
        Bytes buffer(16);
        PeerAddress from;
        for (const std::string to : {"10.0.0.7", "192.168.1.7"}) {
            sendFromPhone({1}, to);
            phone.receive(phoneSocket, buffer, from);
            std::string host, port;
            phone.name(from, host, port);
            answeredBy.push_back(host);
        }
    });
    runtime.runUntilIdle();
    EXPECT_EQ(answeredBy, (std::vector<std::string>{"::ffff:10.0.0.7", "::ffff:192.168.1.7"}));
    EXPECT_TRUE(desktop.isOwnAddress(fd, [&] {
        PeerAddress own;
        desktop.resolve("10.0.0.7", serverPort, own);
        return own;
    }()));
    end(fd);
}

TEST_F(VirtualNetworkTest, KnowsASocketsOwnAddress) {
    const int fd = bound(desktop, serverPort);
    const auto isOwn = [&](const std::string& host, std::uint16_t port) {
        PeerAddress address;
        EXPECT_TRUE(desktop.resolve(host, port, address));
        return desktop.isOwnAddress(fd, address);
    };
    EXPECT_TRUE(isOwn("192.168.1.7", serverPort));
    EXPECT_TRUE(isOwn("127.0.0.1", serverPort));
    EXPECT_FALSE(isOwn("192.168.1.7", 50000));
    EXPECT_FALSE(isOwn("192.168.1.20", serverPort));
}

TEST_F(VirtualNetworkTest, CutsADatagramToTheBuffer) {
    const int fd = bound(desktop, serverPort);
    serve(fd, 4);
    sendFromPhone({1, 2, 3, 4, 5});
    runtime.runUntilIdle();
    EXPECT_EQ(received, (std::vector<Bytes>{{1, 2, 3, 4}}));
    end(fd);
}

TEST_F(VirtualNetworkTest, DeliversExactlyAfterTheLatency) {
    const int fd = bound(desktop, serverPort);
    serve(fd);
    network.setFaults({.latency = 5ms});
    sendFromPhone({1});
    runtime.runFor(1ms);
    sendFromPhone({2});
    runtime.runFor(10ms);
    EXPECT_EQ(arrivals, (std::vector<Duration>{5ms, 6ms}));
    end(fd);
}

TEST_F(VirtualNetworkTest, LosesDoublesAndOvertakesWithTheirProbabilities) {
    const int fd = bound(desktop, serverPort);
    serve(fd);
    network.setFaults({.loss = 0.25, .duplication = 0.5, .latency = 1ms, .jitter = 10ms});
    for (int i = 0; i < 2000; ++i)
        sendFromPhone({static_cast<std::uint8_t>(i % 251)});
    runtime.runFor(11ms);
    EXPECT_NEAR(static_cast<double>(received.size()), 2000 * 0.75 * 1.5, 120);
    EXPECT_GE(arrivals.front(), 1ms);
    EXPECT_LE(arrivals.back(), 11ms);
    EXPECT_FALSE(std::ranges::is_sorted(received));
    network.setFaults({.loss = 1});
    received.clear();
    sendFromPhone({1});
    runtime.runFor(1s);
    EXPECT_TRUE(received.empty());
    end(fd);
}

TEST_F(VirtualNetworkTest, HoldsSomeDatagramsUpForSeconds) {
    const int fd = bound(desktop, serverPort);
    serve(fd);
    network.setFaults({.latency = 1ms, .straying = 0.1, .detour = 3s});
    for (int i = 0; i < 1000; ++i)
        sendFromPhone({1});
    runtime.runFor(1ms);
    EXPECT_NEAR(static_cast<double>(received.size()), 900, 40);
    runtime.runFor(3s);
    EXPECT_EQ(received.size(), 1000u);
    EXPECT_GT(arrivals.back(), 2s);
    end(fd);
}

TEST_F(VirtualNetworkTest, LosesWhatIsSentToOrByAMachineThatIsCutOff) {
    const int fd = bound(desktop, serverPort);
    serve(fd);
    for (const char* machine : {"192.168.1.7", "192.168.1.20"}) {
        network.cutOff(machine, true);
        sendFromPhone({1});
        network.cutOff(machine, false);
    }
    sendFromPhone({2});
    runtime.runUntilIdle();
    EXPECT_EQ(received, (std::vector<Bytes>{{2}}));
    end(fd);
}

TEST_F(VirtualNetworkTest, KeepsAMachinesSocketsWhenItsAddressChanges) {
    const int fd = bound(desktop, serverPort);
    serve(fd);
    network.move("192.168.1.20", "192.168.1.99");
    network.move("192.168.1.7", "192.168.1.77");
    sendFromPhone({1});
    sendFromPhone({2}, "192.168.1.77");
    runtime.runUntilIdle();
    EXPECT_EQ(received, (std::vector<Bytes>{{2}}));
    EXPECT_EQ(peers.at(0), "::ffff:192.168.1.99:50000");
    end(fd);
}

TEST_F(VirtualNetworkTest, CarriesADatagramWhoseSenderIsMadeUp) {
    const int fd = bound(desktop, serverPort);
    serve(fd);
    network.forge("10.0.0.9", 7, "192.168.1.7", serverPort, Bytes{1});
    runtime.runUntilIdle();
    EXPECT_EQ(received, (std::vector<Bytes>{{1}}));
    EXPECT_EQ(peers.at(0), "::ffff:10.0.0.9:7");
    end(fd);
}

TEST_F(VirtualNetworkTest, LosesWhatIsUnderWayAndKeepsWhatHasArrived) {
    const int fd = bound(desktop, serverPort);
    network.setFaults({.latency = 5ms});
    sendFromPhone({1});
    runtime.runFor(5ms);
    sendFromPhone({2});
    network.loseWhatIsUnderWay();
    serve(fd);
    runtime.runFor(1s);
    EXPECT_EQ(received, (std::vector<Bytes>{{1}}));
    end(fd);
}

TEST_F(VirtualNetworkTest, KeepsAtMost4096DatagramsForASocket) {
    const int fd = bound(desktop, serverPort);
    for (int i = 0; i < 4100; ++i)
        sendFromPhone({1});
    serve(fd);
    runtime.runUntilIdle();
    EXPECT_EQ(received.size(), 4096u);
    end(fd);
}

TEST_F(VirtualNetworkTest, LosesWhatIsSentToNobody) {
    sendFromPhone({1});
    sendFromPhone({1}, "10.0.0.1");
    sendFromPhone({1}, "fe80::1");
}

TEST_F(VirtualNetworkTest, BindsAPortOnceOnEachMachine) {
    const int first = bound(desktop, serverPort);
    const int second = desktop.open();
    EXPECT_EQ(desktop.bind(second, serverPort), -EADDRINUSE);
    EXPECT_EQ(desktop.bind(second, 0), 0);
    EXPECT_GT(desktop.localPort(second), 0);
    EXPECT_NE(desktop.localPort(second), desktop.localPort(first));
    bound(phone, serverPort);
    desktop.close(first);
    bound(desktop, serverPort);
}

TEST_F(VirtualNetworkTest, FailsTheChosenCallsUntilHealed) {
    using Call = VirtualNetwork::Call;
    network.fail("192.168.1.7", Call::open, EMFILE);
    EXPECT_EQ(desktop.open(), -EMFILE);
    network.fail("192.168.1.7", Call::open, 0);
    const int fd = desktop.open();
    network.fail("192.168.1.7", Call::bind, EACCES);
    network.fail("192.168.1.7", Call::receive, EIO);
    network.fail("192.168.1.7", Call::send, ENETUNREACH);
    Bytes buffer(8);
    PeerAddress address;
    ASSERT_TRUE(desktop.resolve("192.168.1.20", 50000, address));
    EXPECT_EQ(desktop.bind(fd, 1), -EACCES);
    EXPECT_EQ(desktop.receive(fd, buffer, address), -EIO);
    EXPECT_EQ(desktop.send(fd, Bytes{1}, address), -ENETUNREACH);
    EXPECT_EQ(phone.send(phoneSocket, Bytes{1}, address), 1);
}

TEST_F(VirtualNetworkTest, ResolvesNumbersAndNothingElse) {
    PeerAddress address;
    std::string host, port;
    EXPECT_FALSE(desktop.resolve("studio.local", 1, address));
    EXPECT_FALSE(desktop.resolve("1.2.3.256", 1, address));
    EXPECT_TRUE(desktop.resolve("::ffff:10.0.0.1", 80, address));
    desktop.name(address, host, port);
    EXPECT_EQ(host + " " + port, "::ffff:10.0.0.1 80");
    desktop.name(PeerAddress{{}, 0}, host, port);
    EXPECT_EQ(host + port, "");
}

TEST_F(VirtualNetworkTest, RefusesDescriptorsThatAreNotOpen) {
    Bytes buffer(8);
    PeerAddress address;
    EXPECT_EQ(desktop.receive(5, buffer, address), -EBADF);
    EXPECT_EQ(desktop.bind(5, 1), -EBADF);
    EXPECT_EQ(desktop.localPort(5), -EBADF);
    EXPECT_EQ(desktop.setDualStack(5), -EBADF);
}

} // namespace
} // namespace lumbrine
