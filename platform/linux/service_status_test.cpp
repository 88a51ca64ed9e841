#include "platform/linux/service_status.h"
#include "platform/virtual/null_platform.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstring>

namespace lumbrine {
namespace {

// What systemd is for a service: a socket for its messages, here with an abstract address.
class ServiceManager {
public:
    ServiceManager() {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::memcpy(address.sun_path + 1, name.data(), name.size());
        const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
        EXPECT_EQ(::bind(fd, reinterpret_cast<const sockaddr*>(&address), length), 0);
    }
    ~ServiceManager() { ::close(fd); }

    // Empty when none has come.
    std::string message() const {
        std::array<char, 256> bytes;
        const auto received = ::recv(fd, bytes.data(), bytes.size(), MSG_DONTWAIT);
        return {bytes.data(), received > 0 ? static_cast<std::size_t>(received) : 0};
    }

    const std::string name = "lumbrine-notify-" + std::to_string(::getpid());
    const int fd = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
};

TEST(ServiceStatus, ReachesTheServiceManagerOnceForEachSentence) {
    const ServiceManager manager;
    ServiceStatus status(NullComputer({{"NOTIFY_SOCKET", "@" + manager.name}}));
    EXPECT_TRUE(status.isWanted());
    status.tell("No phone yet.");
    EXPECT_EQ(manager.message(), "STATUS=No phone yet.");
    status.tell("No phone yet.");
    EXPECT_EQ(manager.message(), "");
    status.tell("Fine.");
    EXPECT_EQ(manager.message(), "STATUS=Fine.");
}

TEST(ServiceStatus, IsForNobodyWithoutAServiceManager) {
    for (const std::string& place : {std::string(), std::string("relative"), "/" + std::string(200, 'x')}) {
        ServiceStatus status(NullComputer({{"NOTIFY_SOCKET", place}}));
        EXPECT_FALSE(status.isWanted());
        status.tell("Fine.");
    }
}

} // namespace
} // namespace lumbrine
