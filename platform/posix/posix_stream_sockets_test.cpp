#include "platform/posix/posix_stream_sockets.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <thread>

namespace lumbrine {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

// The other end of the connection, on this computer.
class Listener {
public:
    explicit Listener(int backlog = 8) : fd(::socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        ::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address);
        ::listen(fd, backlog);
    }
    ~Listener() { ::close(fd); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    std::uint16_t port() const {
        sockaddr_in address{};
        socklen_t length = sizeof address;
        ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length);
        return ntohs(address.sin_port);
    }

    int accept() const { return ::accept(fd, nullptr, nullptr); }

private:
    const int fd;
};

class PosixStreamSocketsTest : public testing::Test {
protected:
    void connectBoth() {
        near = sockets.open();
        ASSERT_EQ(sockets.connect(near, "127.0.0.1", listener.port(), 3s), 0);
        far = listener.accept();
        ASSERT_GE(far, 0);
    }

    ~PosixStreamSocketsTest() override {
        if (near >= 0) sockets.close(near);
        for (const int fd : crowding)
            sockets.close(fd);
        closeFarEnd();
    }

    void closeFarEnd() {
        if (far >= 0) ::close(far);
        far = -1;
    }

    int option(int level, int name) const {
        int value = 0;
        socklen_t length = sizeof value;
        ::getsockopt(near, level, name, &value, &length);
        return value;
    }

    // Connects until the queue of pending connections is full.
    void crowd(std::uint16_t port) {
        constexpr std::size_t most = 10;
        int result = 0;
        while (result == 0 && crowding.size() < most) {
            crowding.push_back(sockets.open());
            result = sockets.connect(crowding.back(), "127.0.0.1", port, 100ms);
        }
        EXPECT_EQ(result, -ETIMEDOUT);
    }

    PosixStreamSockets sockets;
    Listener listener;
    std::vector<int> crowding;
    int near = -1;
    int far = -1;
};

TEST_F(PosixStreamSocketsTest, CarriesBytesBothWays) {
    connectBoth();
    EXPECT_EQ(sockets.send(near, Bytes{1, 2, 3}), 3);
    std::array<std::uint8_t, 10> buffer{};
    EXPECT_EQ(::recv(far, buffer.data(), buffer.size(), 0), 3);
    EXPECT_EQ(buffer[2], 3);
    ::send(far, buffer.data(), 2, 0);
    EXPECT_EQ(sockets.receive(near, buffer), 2);
    EXPECT_EQ(buffer[1], 2);
}

TEST_F(PosixStreamSocketsTest, LetsWhatIsSentSoonLeaveWithWhatIsSentNext) {
    connectBoth();
    std::array<std::uint8_t, 10> buffer{};
    EXPECT_EQ(sockets.sendSoon(near, Bytes{1, 2}), 2);
#if defined(MSG_MORE)
    EXPECT_EQ(::recv(far, buffer.data(), buffer.size(), MSG_DONTWAIT), -1);
#endif
    EXPECT_EQ(sockets.send(near, Bytes{3}), 1);
    EXPECT_EQ(::recv(far, buffer.data(), 3, MSG_WAITALL), 3);
    EXPECT_EQ((Bytes{buffer[0], buffer[1], buffer[2]}), (Bytes{1, 2, 3}));
}

TEST_F(PosixStreamSocketsTest, SendsSoonWhenNothingElseIsSent) { // really waits: the system alone decides how long
    connectBoth();
    EXPECT_EQ(sockets.setNoDelay(near), 0);
    std::array<std::uint8_t, 10> buffer{};
    EXPECT_EQ(sockets.sendSoon(near, Bytes{1, 2}), 2);
    EXPECT_EQ(::recv(far, buffer.data(), buffer.size(), 0), 2);
}

TEST_F(PosixStreamSocketsTest, IsRefusedWhereNobodyListens) {
    std::uint16_t port = 0;
    {
        const Listener passing;
        port = passing.port();
    }
    near = sockets.open();
    EXPECT_EQ(sockets.connect(near, "127.0.0.1", port, 3s), -ECONNREFUSED);
}

TEST_F(PosixStreamSocketsTest, TakesNumericAddressesOnly) {
    near = sockets.open();
    for (const char* host : {"", "localhost", "::1", "127.0.0.1:1", "300.0.0.1"})
        EXPECT_EQ(sockets.connect(near, host, listener.port(), 3s), -EINVAL) << host;
}

TEST_F(PosixStreamSocketsTest, GivesUpConnectingAfterItsLimit) {
    const Listener full(0);
    const auto begin = Clock::now();
    crowd(full.port());
    EXPECT_GE(Clock::now() - begin, 100ms);
}

TEST_F(PosixStreamSocketsTest, IsBlockingOnceItIsConnected) {
    connectBoth();
    std::thread later([this] {
        std::this_thread::sleep_for(20ms);
        ::send(far, "x", 1, 0);
    });
    std::array<std::uint8_t, 10> buffer{};
    EXPECT_EQ(sockets.receive(near, buffer), 1);
    later.join();
}

TEST_F(PosixStreamSocketsTest, EndsAReceiveAtItsTimeOut) {
    connectBoth();
    EXPECT_EQ(sockets.setReceiveTimeout(near, 50ms), 0);
    std::array<std::uint8_t, 10> buffer{};
    const auto begin = Clock::now();
    EXPECT_EQ(sockets.receive(near, buffer), -EAGAIN);
    EXPECT_GE(Clock::now() - begin, 45ms);
}

TEST_F(PosixStreamSocketsTest, EndsASendAtItsTimeOut) {
    connectBoth();
    EXPECT_EQ(sockets.setSendTimeout(near, 50ms), 0);
    const Bytes much(1'000'000);
    int sent = 0;
    for (int i = 0; i < 1000 && sent >= 0; ++i)
        sent = sockets.send(near, much);
    EXPECT_EQ(sent, -EAGAIN);
}

TEST_F(PosixStreamSocketsTest, SetsItsOptions) {
    connectBoth();
    EXPECT_EQ(sockets.setReceiveTimeout(near, 3s), 0);
    EXPECT_EQ(sockets.setSendTimeout(near, 3s), 0);
    EXPECT_EQ(option(IPPROTO_TCP, TCP_NODELAY), 0);
    EXPECT_EQ(sockets.setNoDelay(near), 0);
    EXPECT_NE(option(IPPROTO_TCP, TCP_NODELAY), 0);
    EXPECT_EQ(sockets.setNoSignal(near), 0);
}

TEST_F(PosixStreamSocketsTest, RefusesATimeOutThatWouldMeanForEver) {
    connectBoth();
    EXPECT_EQ(sockets.setReceiveTimeout(near, 0s), -EINVAL);
    EXPECT_EQ(sockets.setSendTimeout(near, -1s), -EINVAL);
    EXPECT_EQ(sockets.setReceiveTimeout(near, 1ns), 0);
}

TEST_F(PosixStreamSocketsTest, ReceivesNothingAfterTheEnd) {
    connectBoth();
    closeFarEnd();
    std::array<std::uint8_t, 10> buffer{};
    EXPECT_EQ(sockets.receive(near, buffer), 0);
}

TEST_F(PosixStreamSocketsTest, ReportsAReset) {
    connectBoth();
    const linger atOnce{1, 0};
    ::setsockopt(far, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    closeFarEnd();
    std::array<std::uint8_t, 10> buffer{};
    EXPECT_EQ(sockets.receive(near, buffer), -ECONNRESET);
}

TEST_F(PosixStreamSocketsTest, ReportsAClosedPeerWithoutASignal) {
    connectBoth();
    EXPECT_EQ(sockets.setNoSignal(near), 0);
    closeFarEnd();
    int result = 0;
    for (int i = 0; i < 1000 && result >= 0; ++i)
        result = sockets.send(near, Bytes(1000));
    EXPECT_TRUE(result == -EPIPE || result == -ECONNRESET) << result;
}

TEST_F(PosixStreamSocketsTest, ReportsCallsOnAClosedSocket) {
    near = sockets.open();
    sockets.close(near);
    const int closed = std::exchange(near, -1);
    std::array<std::uint8_t, 10> buffer{};
    EXPECT_EQ(sockets.connect(closed, "127.0.0.1", listener.port(), 1s), -EBADF);
    EXPECT_EQ(sockets.setReceiveTimeout(closed, 1s), -EBADF);
    EXPECT_EQ(sockets.setNoDelay(closed), -EBADF);
    EXPECT_EQ(sockets.send(closed, Bytes{1}), -EBADF);
    EXPECT_EQ(sockets.sendSoon(closed, Bytes{1}), -EBADF);
    EXPECT_EQ(sockets.receive(closed, buffer), -EBADF);
}

TEST_F(PosixStreamSocketsTest, EndsWhatWaitsWhenTheProgramEnds) {
    connectBoth();
    std::thread later([this] {
        std::this_thread::sleep_for(20ms);
        sockets.shutDown();
    });
    std::array<std::uint8_t, 10> buffer{};
    EXPECT_EQ(sockets.receive(near, buffer), 0);
    later.join();
    EXPECT_EQ(sockets.send(near, Bytes{1}), -EPIPE);
    EXPECT_EQ(sockets.open(), -ESHUTDOWN);
}

TEST_F(PosixStreamSocketsTest, EndsAConnectingWhenTheProgramEnds) {
    const Listener full(0);
    crowd(full.port());
    near = sockets.open();
    std::thread later([this] {
        std::this_thread::sleep_for(20ms);
        sockets.shutDown();
    });
    const auto begin = Clock::now();
    EXPECT_LT(sockets.connect(near, "127.0.0.1", full.port(), 10s), 0);
    EXPECT_LT(Clock::now() - begin, 5s);
    later.join();
}

TEST_F(PosixStreamSocketsTest, ConnectsNoMoreWhenTheProgramEnds) {
    near = sockets.open();
    sockets.shutDown();
    EXPECT_EQ(sockets.connect(near, "127.0.0.1", listener.port(), 3s), -ESHUTDOWN);
}

} // namespace
} // namespace lumbrine
