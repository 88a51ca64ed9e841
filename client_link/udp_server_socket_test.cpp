// The server on its socket: starting, the receive thread, failures, and the end.
#include "client_link/testing/datagrams.h"
#include "client_link/testing/recording_sockets.h"
#include "client_link/udp_server.h"
#include "platform/virtual/still_runtime.h"
#include "platform/virtual/virtual_network.h"
#include "platform/virtual/virtual_runtime.h"

#include <array>
#include <cerrno>

namespace lumbrine {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint16_t port = 52700;

// ---- Starting

class UDPServerStart : public testing::Test {
protected:
    StillRuntime runtime;
    RecordingSockets sockets;
    UDPServer server{runtime, sockets, port};

    void expectNothingIsSent() {
        server.handleDatagram(touch, peerAt("10.0.0.1:1"));
        server.handleDatagram(touch, peerAt("10.0.0.2:1")); // would be answered with busy
        server.send(news, "10.0.0.1:1");
        server.broadcast(news);
        EXPECT_THAT(sockets.sent, IsEmpty());
        EXPECT_THAT(sockets.calls, testing::Not(testing::Contains("send on no socket")));
    }
};

TEST_F(UDPServerStart, OpensConfiguresAndBindsTheSocketInThisOrder) {
    EXPECT_TRUE(server.start().has_value());
    EXPECT_THAT(sockets.calls, ElementsAre("open", "reuse address", "dual stack", "bind 52700"));
}

TEST_F(UDPServerStart, IgnoresThatAnOptionCannotBeSet) {
    sockets.optionResult = -ENOPROTOOPT;
    EXPECT_TRUE(server.start().has_value());
    EXPECT_EQ(sockets.calls.back(), "bind 52700");
}

TEST_F(UDPServerStart, LogsThatThereIsNoSocket) {
    sockets.openResult = -EMFILE;
    const auto started = server.start();
    ASSERT_FALSE(started.has_value());
    EXPECT_EQ(started.error().code, EMFILE);
    EXPECT_EQ(started.error().description, "socket: Too many open files");
    EXPECT_THAT(sockets.calls, ElementsAre("open"));
    expectNothingIsSent();
}

TEST_F(UDPServerStart, LogsThatThePortCannotBeBound) {
    sockets.bindResult = -EADDRINUSE;
    const auto started = server.start();
    ASSERT_FALSE(started.has_value());
    EXPECT_EQ(started.error().code, EADDRINUSE);
    EXPECT_EQ(started.error().description, "bind: Address already in use");
    EXPECT_EQ(sockets.calls.back(), "close");
    expectNothingIsSent();
}

TEST_F(UDPServerStart, IsNeededBeforeAnythingIsSent) {
    expectNothingIsSent();
    EXPECT_THAT(sockets.calls, IsEmpty());
}

TEST(UDPServerEnd, ShutsTheSocketDownAndClosesIt) {
    StillRuntime runtime;
    RecordingSockets sockets;
    {
        UDPServer server(runtime, sockets, port);
        ASSERT_TRUE(server.start().has_value());
        sockets.calls.clear();
    }
    EXPECT_THAT(sockets.calls, ElementsAre("shut down", "close"));
}

TEST_F(UDPServerStart, IsNoLongerOfUseOnceTheServerHasEnded) {
    ASSERT_TRUE(server.start().has_value());
    server.handleDatagram(touch, peerAt("10.0.0.1:1"));
    server.end();
    expectNothingIsSent();
    sockets.calls.clear();
    server.end();
    EXPECT_THAT(sockets.calls, IsEmpty());
}

TEST(UDPServerEnd, TouchesNoSocketWhereNoneCameToBe) {
    StillRuntime runtime;
    RecordingSockets sockets;
    sockets.bindResult = -EACCES;
    {
        UDPServer server(runtime, sockets, port);
        EXPECT_FALSE(server.start().has_value());
        sockets.calls.clear();
    }
    EXPECT_THAT(sockets.calls, IsEmpty());
}

// ---- Receiving

// A phone at an address, which keeps what it receives.
class Phone {
public:
    Phone(VirtualRuntime& runtime, VirtualNetwork& network, const std::string& address, std::uint16_t fromPort)
        : sockets(network.host(address)), fd(sockets.open()) {
        EXPECT_GE(sockets.bind(fd, fromPort), 0);
        speakTo("192.168.1.7");
        thread = runtime.startThread("phone", [this] { listen(); });
    }
    ~Phone() {
        sockets.shutDown(fd);
        thread.reset();
        sockets.close(fd);
    }
    Phone(const Phone&) = delete;
    Phone& operator=(const Phone&) = delete;

    // Where it sends to from now on: an address of the receiver.
    void speakTo(const std::string& address) { EXPECT_TRUE(sockets.resolve(address, port, receiver)); }

    void send(const Bytes& bytes) { sockets.send(fd, bytes, receiver); }

    std::vector<Bytes> heard;
    std::string answeredBy; // "host" of the last one

private:
    void listen() {
        std::array<std::uint8_t, 2048> buffer{};
        PeerAddress from;
        for (int size = 0; (size = sockets.receive(fd, buffer, from)) >= 0;) {
            heard.emplace_back(buffer.begin(), buffer.begin() + size);
            std::string portText;
            sockets.name(from, answeredBy, portText);
        }
    }

    DatagramSockets& sockets;
    const int fd;
    PeerAddress receiver;
    std::unique_ptr<Thread> thread;
};

class UDPServerReceiving : public testing::Test {
protected:
    UDPServerReceiving() {
        server.onDatagram = [this](ByteView bytes, const Sender& sender) {
            delivered.emplace_back(bytes.begin(), bytes.end());
            lastKey = sender.key;
        };
        EXPECT_TRUE(server.start().has_value());
        runtime.runUntilIdle();
    }

    void sendFrom(Phone& sender, const Bytes& bytes) {
        sender.send(bytes);
        runtime.runUntilIdle();
    }

    VirtualRuntime runtime;
    VirtualNetwork network{runtime};
    std::vector<Bytes> delivered;
    std::string lastKey;
    UDPServer server{runtime, network.host("192.168.1.7"), port};
    Phone phone{runtime, network, "192.168.1.20", 50000};
    Phone tablet{runtime, network, "192.168.1.30", 50001};
};

TEST_F(UDPServerReceiving, DeliversADatagramWithItsSendersKey) {
    sendFrom(phone, touch);
    EXPECT_THAT(delivered, ElementsAre(touch));
    EXPECT_EQ(lastKey, "::ffff:192.168.1.20:50000");
    EXPECT_THAT(server.connectedIPs(), ElementsAre("::ffff:192.168.1.20"));
}

TEST_F(UDPServerReceiving, AnswersASecondPhoneWithBusyUntilTheFirstIsSilentForSixSeconds) {
    sendFrom(phone, touch);
    runtime.runFor(seconds(5.999));
    sendFrom(tablet, touch);
    EXPECT_THAT(tablet.heard, ElementsAre(busy));
    EXPECT_EQ(delivered.size(), 1u);
    runtime.runFor(seconds(0.001));
    sendFrom(tablet, touch);
    EXPECT_EQ(tablet.heard.size(), 1u);
    EXPECT_EQ(delivered.size(), 2u);
    EXPECT_THAT(phone.heard, IsEmpty());
}

TEST_F(UDPServerReceiving, BroadcastsToTheOwnerAlone) {
    sendFrom(phone, touch);
    sendFrom(tablet, touch);
    server.broadcast(news);
    runtime.runUntilIdle();
    EXPECT_THAT(phone.heard, ElementsAre(news));
    EXPECT_THAT(tablet.heard, ElementsAre(busy));
}

TEST_F(UDPServerReceiving, AnswersFromTheAddressThatThePhoneSpokeToLast) {
    network.addAddress("192.168.1.7", "10.0.0.7");
    phone.speakTo("10.0.0.7");
    sendFrom(phone, touch);
    server.broadcast(news);
    runtime.runUntilIdle();
    EXPECT_EQ(phone.answeredBy, "::ffff:10.0.0.7");

    phone.speakTo("192.168.1.7");
    sendFrom(phone, touch);
    server.broadcast(news);
    runtime.runUntilIdle();
    EXPECT_EQ(phone.answeredBy, "::ffff:192.168.1.7");
}

TEST_F(UDPServerReceiving, DeliversADatagramOf2048BytesWhole) {
    const Bytes largest(2048, 0x55);
    sendFrom(phone, largest);
    EXPECT_THAT(delivered, ElementsAre(largest));
}

TEST_F(UDPServerReceiving, CutsALongerDatagramTo2048Bytes) {
    Bytes longer(2049, 0x55);
    sendFrom(phone, longer);
    longer.pop_back();
    EXPECT_THAT(delivered, ElementsAre(longer));
}

TEST_F(UDPServerReceiving, DeliversExactlyTheBytesOfAShorterDatagram) {
    sendFrom(phone, Bytes(100, 0x55));
    sendFrom(phone, touch);
    EXPECT_EQ(delivered.back(), touch);
}

TEST_F(UDPServerReceiving, TakesNoNoticeOfAnEmptyDatagram) {
    sendFrom(phone, {});
    EXPECT_THAT(delivered, IsEmpty());
    EXPECT_EQ(server.liveOwnerKey(), std::nullopt);
    sendFrom(tablet, touch);
    EXPECT_THAT(delivered, ElementsAre(touch));
}

TEST_F(UDPServerReceiving, LetsAnotherReceiversRefusalRest) {
    UDPServer other(runtime, network.host("192.168.1.8"), port);
    ASSERT_TRUE(other.start().has_value());
    network.forge("192.168.1.9", port, "192.168.1.8", port, touch); // both have a client
    sendFrom(phone, touch);
    network.forge("192.168.1.7", port, "192.168.1.8", port, touch);
    runtime.runUntilIdle(); // would never be idle if each answered the other's refusal
    EXPECT_THAT(server.connectedIPs(), ElementsAre("::ffff:192.168.1.20"));
}

TEST_F(UDPServerReceiving, DoesNotAnswerItself) {
    sendFrom(phone, touch);
    for (const char* host : {"192.168.1.7", "127.0.0.1"})
        network.forge(host, port, "192.168.1.7", port, Bytes{0x01});
    runtime.runUntilIdle();
    EXPECT_THAT(server.connectedIPs(), ElementsAre("::ffff:192.168.1.20"));
}

TEST_F(UDPServerReceiving, AnswersFromTheCallback) {
    server.onDatagram = [this](ByteView, const Sender& sender) { server.send(news, sender.key); };
    sendFrom(phone, touch);
    EXPECT_THAT(phone.heard, ElementsAre(news));
}

TEST_F(UDPServerReceiving, EndsAfterTheCallbackThatIsUnderWayAndItsAnswer) {
    server.onDatagram = [this](ByteView, const Sender& sender) {
        runtime.sleepFor(seconds(0.5));
        server.send(news, sender.key);
    };
    sendFrom(phone, touch);
    const TimePoint before = runtime.now();
    server.end();
    EXPECT_EQ(runtime.now() - before, seconds(0.5));
    runtime.runUntilIdle();
    EXPECT_THAT(phone.heard, ElementsAre(news));
}

// ---- Receive errors

// Sockets whose `receive` fails at once a given number of times and then waits for the end.
class BrokenSockets : public RecordingSockets {
public:
    explicit BrokenSockets(VirtualRuntime& runtime) : runtime(runtime), ended(runtime.makeSignal()) {}

    int receive(int, std::span<std::uint8_t> buffer, PeerAddress& from) override {
        receiveTimes.push_back(runtime.now());
        if (failures > 0) {
            --failures;
            return -EIO;
        }
        if (!std::exchange(healthy, true)) {
            buffer[0] = 0x01;
            from = peerAt("10.0.0.1:1");
            return 1;
        }
        while (!down)
            ended->wait("the end of the socket", std::nullopt);
        return -ESHUTDOWN;
    }

    void shutDown(int) override {
        down = true;
        ended->notifyAll();
    }

    VirtualRuntime& runtime;
    std::unique_ptr<VirtualRuntime::Signal> ended;
    std::vector<TimePoint> receiveTimes;
    int failures = 0;
    bool healthy = false;
    bool down = false;
};

TEST(UDPServerErrors, TriesAgainEachMillisecondUntilItReceives) {
    VirtualRuntime runtime;
    BrokenSockets sockets(runtime);
    sockets.failures = 3;
    UDPServer server(runtime, sockets, port);
    int delivered = 0;
    server.onDatagram = [&delivered](ByteView, const Sender&) { ++delivered; };
    const TimePoint begin = runtime.now();
    ASSERT_TRUE(server.start().has_value());

    runtime.runFor(seconds(0.0029));
    EXPECT_THAT(sockets.receiveTimes, ElementsAre(begin, begin + seconds(0.001), begin + seconds(0.002)));
    EXPECT_EQ(delivered, 0);
    runtime.runFor(seconds(0.0001));
    EXPECT_EQ(delivered, 1);
}

TEST(UDPServerErrors, GoOnForAsLongAsTheServerRuns) {
    VirtualRuntime runtime;
    BrokenSockets sockets(runtime);
    sockets.failures = 1'000'000;
    {
        UDPServer server(runtime, sockets, port);
        ASSERT_TRUE(server.start().has_value());
        runtime.runFor(seconds(1.0));
        EXPECT_EQ(sockets.receiveTimes.size(), 1001u);
    }
    runtime.runFor(seconds(1.0));
    EXPECT_EQ(sockets.receiveTimes.size(), 1001u);
}

} // namespace
} // namespace lumbrine
