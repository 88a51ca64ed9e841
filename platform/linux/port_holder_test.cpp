#include "platform/linux/linux_datagram_sockets.h"
#include "platform/linux/port_holder.h"

#include <unistd.h>

namespace lumbrine {
namespace {

const std::string table =
    "  sl  local_address                         remote_address                        st tx_queue rx_queue tr "
    "tm->when "
    "retrnsmt   uid  timeout inode ref pointer drops\n"
    "   71: 00000000000000000000000000000000:14E9 00000000000000000000000000000000:0000 07 00000000:00000000 "
    "00:00000000 00000000     0        0 1111 2 0000000000000000 0\n"
    "  104: 00000000000000000000000000000000:CDDC 00000000000000000000000000000000:0000 07 00000000:00000000 "
    "00:00000000 00000000  1000        0 2222 2 0000000000000000 0\n";

TEST(PortHolder, FindsTheSocketInTheSystemsTable) {
    EXPECT_EQ(socketOfPort(table, 52700, unconnected), "2222");
    EXPECT_EQ(socketOfPort(table, 52700, listening), std::nullopt);
    EXPECT_EQ(socketOfPort(table, 52701, unconnected), std::nullopt);
    EXPECT_EQ(socketOfPort("no table\n", 0, unconnected), std::nullopt);
    EXPECT_EQ(socketOfPort("", 52700, unconnected), std::nullopt);
}

TEST(PortHolder, NamesTheProgram) {
    LinuxDatagramSockets sockets;
    const int fd = sockets.open();
    ASSERT_EQ(sockets.bind(fd, 0), 0);
    const auto port = static_cast<std::uint16_t>(sockets.localPort(fd));
    const auto holder = holderOfUDPPort(port);
    sockets.close(fd);
    ASSERT_TRUE(holder);
    EXPECT_NE(holder->find("(process " + std::to_string(::getpid()) + ")"), std::string::npos) << *holder;
    EXPECT_EQ(holderOfUDPPort(port), std::nullopt);
}

} // namespace
} // namespace lumbrine
