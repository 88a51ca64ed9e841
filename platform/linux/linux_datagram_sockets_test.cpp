#include "platform/linux/linux_datagram_sockets.h"

#include <cerrno>

namespace lumbrine {
namespace {

class LinuxDatagramSocketsTest : public testing::Test {
protected:
    // As a receiver opens its port.
    int bound(std::uint16_t port) {
        fd = sockets.open();
        sockets.setReuseAddress(fd);
        sockets.setDualStack(fd);
        return sockets.bind(fd, port);
    }

    LinuxDatagramSockets sockets;
    int fd = -1;
};

TEST_F(LinuxDatagramSocketsTest, DoNotShareAPort) {
    ASSERT_EQ(bound(0), 0);
    const int first = fd;
    const auto port = static_cast<std::uint16_t>(sockets.localPort(first));
    EXPECT_EQ(bound(port), -EADDRINUSE);
    sockets.close(fd);
    sockets.close(first);
    EXPECT_EQ(bound(port), 0) << "closed, it is free at once";
    sockets.close(fd);
}

TEST_F(LinuxDatagramSocketsTest, TakeNoPortFromASocketThatWouldShareIt) {
    PosixDatagramSockets sharing;
    const int other = sharing.open();
    sharing.setReuseAddress(other);
    ASSERT_EQ(sharing.bind(other, 0), 0);
    EXPECT_EQ(bound(static_cast<std::uint16_t>(sharing.localPort(other))), -EADDRINUSE);
    sockets.close(fd);
    sharing.close(other);
}

} // namespace
} // namespace lumbrine
