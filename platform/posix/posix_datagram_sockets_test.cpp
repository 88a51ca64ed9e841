#include "platform/posix/posix_datagram_sockets.h"

#include <pthread.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <future>
#include <optional>
#include <thread>
#include <utility>

namespace lumbrine {
namespace {

using namespace std::chrono_literals;

const std::string ipv4Loopback = "127.0.0.1";
const std::string ipv6Loopback = "::1";

// A socket bound to a free port, and one datagram at a time out of it.
class BoundSocket {
public:
    explicit BoundSocket(PosixDatagramSockets& sockets) : sockets(sockets), fd(sockets.open()) {
        EXPECT_GE(fd, 0);
        EXPECT_EQ(sockets.setReuseAddress(fd), 0);
        EXPECT_EQ(sockets.setDualStack(fd), 0);
        EXPECT_EQ(sockets.bind(fd, 0), 0);
    }
    ~BoundSocket() { sockets.close(fd); }
    BoundSocket(const BoundSocket&) = delete;
    BoundSocket& operator=(const BoundSocket&) = delete;

    std::uint16_t port() const { return static_cast<std::uint16_t>(sockets.localPort(fd)); }

    int sendTo(const BoundSocket& other, const std::string& host, ByteView bytes) {
        PeerAddress address;
        EXPECT_TRUE(sockets.resolve(host, other.port(), address));
        return sockets.send(fd, bytes, address);
    }

    Bytes receive() {
        Bytes buffer(2048);
        const int received = sockets.receive(fd, buffer, from);
        EXPECT_GE(received, 0);
        buffer.resize(static_cast<std::size_t>(std::max(received, 0)));
        return buffer;
    }

    std::string senderName() {
        std::string host;
        std::string portText;
        sockets.name(from, host, portText);
        return host + ":" + portText;
    }

    PosixDatagramSockets& sockets;
    const int fd;
    PeerAddress from; // sender of the last datagram received
};

class PosixDatagramSocketsTest : public testing::Test {
protected:
    PosixDatagramSockets sockets;
    BoundSocket receiver{sockets};
    BoundSocket sender{sockets};
};

TEST_F(PosixDatagramSocketsTest, ReceivesFromIPv4AndIPv6PeersOnOneSocket) {
    EXPECT_EQ(sender.sendTo(receiver, ipv4Loopback, Bytes{1, 2, 3}), 3);
    EXPECT_EQ(receiver.receive(), (Bytes{1, 2, 3}));
    EXPECT_EQ(receiver.senderName(), "::ffff:127.0.0.1:" + std::to_string(sender.port()));

    EXPECT_EQ(sender.sendTo(receiver, ipv6Loopback, Bytes{4}), 1);
    EXPECT_EQ(receiver.receive(), Bytes{4});
    EXPECT_EQ(receiver.senderName(), "::1:" + std::to_string(sender.port()));
}

TEST_F(PosixDatagramSocketsTest, KnowsItsOwnAddress) {
    const auto isOwn = [&](const std::string& host, std::uint16_t port) {
        PeerAddress address;
        EXPECT_TRUE(sockets.resolve(host, port, address));
        return sockets.isOwnAddress(receiver.fd, address);
    };
    EXPECT_TRUE(isOwn(ipv4Loopback, receiver.port()));
    EXPECT_TRUE(isOwn(ipv6Loopback, receiver.port()));
    EXPECT_FALSE(isOwn(ipv4Loopback, sender.port()));
    EXPECT_FALSE(isOwn("192.0.2.1", receiver.port())); // for documentation: no computer has it
    EXPECT_FALSE(isOwn("2001:db8::1", receiver.port()));
}

TEST_F(PosixDatagramSocketsTest, AnswersToTheAddressADatagramCameFrom) {
    sender.sendTo(receiver, ipv4Loopback, Bytes{1});
    receiver.receive();
    EXPECT_EQ(sockets.send(receiver.fd, Bytes{0x01, 0x7F}, receiver.from), 2);
    EXPECT_EQ(sender.receive(), (Bytes{0x01, 0x7F}));
}

TEST_F(PosixDatagramSocketsTest, AnswersFromTheAddressThatADatagramWasSentTo) {
    const std::string second = "127.0.0.2"; // the system would choose 127.0.0.1
    if (sender.sendTo(receiver, second, Bytes{1}) < 0) GTEST_SKIP() << "this computer has one IPv4 address only";
    receiver.receive();
    ASSERT_EQ(sockets.send(receiver.fd, Bytes{2}, receiver.from), 1);
    EXPECT_EQ(sender.receive(), Bytes{2});
    EXPECT_EQ(sender.senderName(), "::ffff:127.0.0.2:" + std::to_string(receiver.port()));

    ASSERT_EQ(sender.sendTo(receiver, ipv6Loopback, Bytes{3}), 1);
    receiver.receive();
    ASSERT_EQ(sockets.send(receiver.fd, Bytes{4}, receiver.from), 1);
    EXPECT_EQ(sender.receive(), Bytes{4});
    EXPECT_EQ(sender.senderName(), "::1:" + std::to_string(receiver.port()));
}

TEST_F(PosixDatagramSocketsTest, AnswersFromAnotherAddressWhenThatOneHasGone) {
    EXPECT_EQ(sender.sendTo(receiver, ipv4Loopback, Bytes{1}), 1);
    receiver.receive();
    PeerAddress peer = receiver.from;
    peer.spokenTo[15] = 9;
    peer.spokenTo[12] = 192; // 192.0.0.9 is nobody's (RFC 6890, section 2.2.2)
    ASSERT_EQ(sockets.send(receiver.fd, Bytes{2}, peer), 1);
    EXPECT_EQ(sender.receive(), Bytes{2});
    EXPECT_EQ(sender.senderName(), "::ffff:127.0.0.1:" + std::to_string(receiver.port()));
}

TEST_F(PosixDatagramSocketsTest, GivesEqualAddressBytesForEqualPeers) {
    sender.sendTo(receiver, ipv4Loopback, Bytes{1});
    receiver.receive();
    const PeerAddress first = receiver.from;
    receiver.from = PeerAddress{};
    sender.sendTo(receiver, ipv4Loopback, Bytes{2});
    receiver.receive();
    EXPECT_EQ(receiver.from.length, first.length);
    EXPECT_LT(first.length, 128u);
    EXPECT_EQ(receiver.from.storage, first.storage);
}

TEST_F(PosixDatagramSocketsTest, CutsALongDatagramToTheBuffer) {
    Bytes datagram(2049, 0x55);
    sender.sendTo(receiver, ipv4Loopback, datagram);
    EXPECT_EQ(receiver.receive(), Bytes(2048, 0x55));
    datagram.resize(2048);
    sender.sendTo(receiver, ipv4Loopback, datagram);
    EXPECT_EQ(receiver.receive(), datagram);
}

TEST_F(PosixDatagramSocketsTest, ReceivesAnEmptyDatagramAsZeroBytes) {
    EXPECT_EQ(sender.sendTo(receiver, ipv4Loopback, Bytes{}), 0);
    EXPECT_EQ(receiver.receive(), Bytes{});
    EXPECT_EQ(receiver.senderName(), "::ffff:127.0.0.1:" + std::to_string(sender.port()));
}

TEST_F(PosixDatagramSocketsTest, RefusesAPortThatIsTaken) {
    const int holder = sockets.open();
    ASSERT_EQ(sockets.bind(holder, 0), 0);
    const int second = sockets.open();
    EXPECT_EQ(sockets.bind(second, static_cast<std::uint16_t>(sockets.localPort(holder))), -EADDRINUSE);
    sockets.close(second);
    sockets.close(holder);
}

TEST_F(PosixDatagramSocketsTest, ReturnsTheSystemsErrorForADescriptorThatIsNone) {
    std::array<std::uint8_t, 16> buffer{};
    PeerAddress address;
    EXPECT_EQ(sockets.receive(-1, buffer, address), -EBADF);
    EXPECT_EQ(sockets.send(-1, buffer, address), -EBADF);
    EXPECT_EQ(sockets.bind(-1, 0), -EBADF);
    EXPECT_EQ(sockets.localPort(-1), -EBADF);
    EXPECT_EQ(sockets.setReuseAddress(-1), -EBADF);
    EXPECT_EQ(sockets.setDualStack(-1), -EBADF);
}

TEST_F(PosixDatagramSocketsTest, NamesPeersInNumbersWhereTheSystemKnowsWords) {
    for (const auto& [host, numeric] : {std::pair{ipv4Loopback, "::ffff:127.0.0.1"}, std::pair{ipv6Loopback, "::1"}}) {
        for (const std::uint16_t port : std::array<std::uint16_t, 2>{53, 80}) { // domain, http
            PeerAddress address;
            ASSERT_TRUE(sockets.resolve(host, port, address));
            std::string hostText;
            std::string portText;
            sockets.name(address, hostText, portText);
            EXPECT_EQ(hostText, numeric);
            EXPECT_EQ(portText, std::to_string(port));
        }
    }
}

TEST_F(PosixDatagramSocketsTest, CannotNameWhatIsNoAddress) {
    std::string host = "before";
    std::string port = "before";
    sockets.name(PeerAddress{}, host, port);
    EXPECT_EQ(host, "");
    EXPECT_EQ(port, "");
}

TEST_F(PosixDatagramSocketsTest, FindsNoAddressForAnImpossibleHost) {
    PeerAddress address;
    EXPECT_FALSE(sockets.resolve(std::string(300, 'x'), 1, address));
}

TEST_F(PosixDatagramSocketsTest, GoesOnReceivingAfterASignal) {
    struct sigaction action{};
    action.sa_handler = [](int) {};
    struct sigaction before{};
    sigaction(SIGUSR1, &action, &before); // without SA_RESTART, so that the call is interrupted

    std::promise<pthread_t> started;
    auto received = std::async(std::launch::async, [&] {
        started.set_value(pthread_self());
        return receiver.receive();
    });
    const pthread_t thread = started.get_future().get();
    for (int i = 0; i < 10; ++i) {
        std::this_thread::sleep_for(1ms);
        pthread_kill(thread, SIGUSR1);
    }
    sender.sendTo(receiver, ipv4Loopback, Bytes{7});
    EXPECT_EQ(received.get(), Bytes{7});
    sigaction(SIGUSR1, &before, nullptr);
}

// The result of `receive` after the socket was shut down; absent when it still waits after ten seconds.
std::optional<int> endOf(std::future<int>& waiting) {
    if (waiting.wait_for(10s) != std::future_status::ready) return std::nullopt;
    return waiting.get();
}

int receiveOnce(BoundSocket& socket) {
    std::array<std::uint8_t, 16> buffer{};
    return socket.sockets.receive(socket.fd, buffer, socket.from);
}

TEST_F(PosixDatagramSocketsTest, WakesAWaitingReceiveWhenShutDown) {
    for (int round = 0; round < 100; ++round) {
        BoundSocket socket(sockets);
        auto waiting = std::async(std::launch::async, [&] { return receiveOnce(socket); });
        if (round % 2 == 0) std::this_thread::sleep_for(1ms); // in its call, or about to make it
        sockets.shutDown(socket.fd);
        const auto result = endOf(waiting);
        ASSERT_TRUE(result.has_value());
        EXPECT_LT(*result, 0);
    }
}

TEST_F(PosixDatagramSocketsTest, ReceivesNothingMoreOnceShutDown) {
    sockets.shutDown(receiver.fd);
    sender.sendTo(receiver, ipv4Loopback, Bytes{1});
    EXPECT_LT(receiveOnce(receiver), 0);
    EXPECT_LT(receiveOnce(receiver), 0);
}

TEST_F(PosixDatagramSocketsTest, SendsAsBeforeOnASocketThatIsShutDown) {
    sockets.shutDown(sender.fd);
    sender.sendTo(receiver, ipv4Loopback, Bytes{1});
    EXPECT_EQ(receiver.receive(), Bytes{1});
}

TEST_F(PosixDatagramSocketsTest, ShutsDownASocketWhoseBufferIsFull) {
    for (int i = 0; i < 2000; ++i)
        sender.sendTo(receiver, ipv4Loopback, Bytes(1024));
    sockets.shutDown(receiver.fd);
    EXPECT_LT(receiveOnce(receiver), 0);
}

TEST_F(PosixDatagramSocketsTest, LeavesOtherSocketsAloneWhenOneIsShutDown) {
    sockets.shutDown(sender.fd);
    BoundSocket other(sockets);
    other.sendTo(receiver, ipv4Loopback, Bytes{1});
    EXPECT_EQ(receiver.receive(), Bytes{1});
}

TEST_F(PosixDatagramSocketsTest, ReceivesOnANewSocketThatGotTheNumberOfAClosedOne) {
    int closed = -1;
    {
        BoundSocket socket(sockets);
        closed = socket.fd;
        sockets.shutDown(socket.fd);
    }
    BoundSocket socket(sockets);
    ASSERT_EQ(socket.fd, closed);
    sender.sendTo(socket, ipv6Loopback, Bytes{1});
    EXPECT_EQ(socket.receive(), Bytes{1});
}

// The network takes datagrams as fast as a test can send them. A local socket from which nobody receives does not.
TEST_F(PosixDatagramSocketsTest, DropsADatagramInsteadOfWaitingForAFullBuffer) {
    const std::string path = testing::TempDir() + "full-buffer-" + std::to_string(::getpid());
    sockaddr_un system{};
    system.sun_family = AF_UNIX;
    ASSERT_LT(path.size(), sizeof system.sun_path);
    path.copy(system.sun_path, path.size());
    PeerAddress nobody;
    std::memcpy(nobody.storage.data(), &system, sizeof system);
    nobody.length = sizeof system;
    const int slow = ::socket(AF_UNIX, SOCK_DGRAM, 0);
    ASSERT_EQ(::bind(slow, reinterpret_cast<const sockaddr*>(&system), sizeof system), 0);
    const int fast = ::socket(AF_UNIX, SOCK_DGRAM, 0);

    int result = 0;
    for (int i = 0; i < 100'000 && result >= 0; ++i)
        result = sockets.send(fast, Bytes(100), nobody);
    EXPECT_TRUE(result == -EAGAIN || result == -ENOBUFS) << result;

    ::close(fast);
    ::close(slow);
    ::unlink(path.c_str());
}

} // namespace
} // namespace lumbrine
