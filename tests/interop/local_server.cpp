#include "tests/interop/local_server.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <utility>

namespace lumbrine::interop {

namespace {

sockaddr_in loopback(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return address;
}

int listeningSocket() {
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    const sockaddr_in address = loopback(0);
    ::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    ::listen(fd, 16);
    return fd;
}

bool isFree(std::uint16_t port) {
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    const sockaddr_in address = loopback(port);
    const bool bound = ::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    ::close(fd);
    return bound;
}

std::uint16_t portOf(int fd) {
    sockaddr_in address{};
    socklen_t length = sizeof address;
    ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length);
    return ntohs(address.sin_port);
}

} // namespace

// Below the ports that the system gives to connections: else a client that looks for a server which is being started
// again may itself be given that server's port.
std::uint16_t freeStreamPort() {
    static std::uint16_t next = 20'000;
    while (!isFree(next))
        ++next;
    return next++;
}

bool isListenedAt(std::uint16_t port) {
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    const sockaddr_in address = loopback(port);
    const bool connected = ::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    ::close(fd);
    return connected;
}

bool isListenedAt(const std::filesystem::path& socket) {
    const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    socket.string().copy(address.sun_path, sizeof address.sun_path - 1);
    const bool connected = ::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    ::close(fd);
    return connected;
}

LocalServer::LocalServer(std::function<void(int connection)> serve)
    : LocalServer(listeningSocket(), std::move(serve)) {}

LocalServer::LocalServer(int listener, std::function<void(int connection)> serveOne)
    : port(portOf(listener)), serveOne(std::move(serveOne)), listener(listener), thread([this] { run(); }) {}

LocalServer::~LocalServer() {
    ::shutdown(listener, SHUT_RDWR);
    thread.join();
    ::close(listener);
}

void LocalServer::run() {
    for (;;) {
        const int connection = ::accept(listener, nullptr, nullptr);
        if (connection < 0) return;
        ++accepted;
        serveOne(connection);
        ::close(connection);
    }
}

} // namespace lumbrine::interop
