#include "tests/end_to_end/client_socket.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <stdexcept>

namespace lumbrine::end_to_end {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t longestDatagram = 65536;

int openSocket(int family) {
    const int fd = ::socket(family, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (fd < 0) throw std::runtime_error("no socket");
    return fd;
}

int openBoundSocket() {
    const int fd = openSocket(AF_INET6);
    sockaddr_in6 any{};
    any.sin6_family = AF_INET6;
    any.sin6_addr = in6addr_any;
    if (::bind(fd, reinterpret_cast<const sockaddr*>(&any), sizeof any) != 0) throw std::runtime_error("no free port");
    return fd;
}

int openClientSocket(std::uint16_t receiverPort, const char* receiverAddress) {
    const int fd = openSocket(AF_INET);
    sockaddr_in receiver{};
    receiver.sin_family = AF_INET;
    if (::inet_pton(AF_INET, receiverAddress, &receiver.sin_addr) != 1) throw std::runtime_error("no IPv4 address");
    receiver.sin_port = htons(receiverPort);
    if (::connect(fd, reinterpret_cast<const sockaddr*>(&receiver), sizeof receiver) != 0)
        throw std::runtime_error("the socket does not connect");
    return fd;
}

std::chrono::milliseconds timeUntil(Clock::time_point deadline) {
    return std::max(std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()),
                    std::chrono::milliseconds(0));
}

} // namespace

std::uint16_t freePort() {
    return PortHolder().port();
}

PortHolder::PortHolder() : fd(openBoundSocket()) {}

PortHolder::~PortHolder() {
    ::close(fd);
}

std::uint16_t PortHolder::port() const {
    sockaddr_in6 address{};
    socklen_t length = sizeof address;
    ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length);
    return ntohs(address.sin6_port);
}

ClientSocket::ClientSocket(std::uint16_t receiverPort, const char* receiverAddress)
    : fd(openClientSocket(receiverPort, receiverAddress)) {}

ClientSocket::~ClientSocket() {
    ::close(fd);
}

void ClientSocket::send(ByteView datagram) {
    // Where nobody listens any more the system says so at the next call, which is of no interest here.
    ::send(fd, datagram.data(), datagram.size(), 0);
}

std::optional<Bytes> ClientSocket::receive(std::chrono::milliseconds limit) {
    return receive([](const Bytes&) { return true; }, limit);
}

std::optional<Bytes> ClientSocket::receive(const std::function<bool(const Bytes&)>& wanted,
                                           std::chrono::milliseconds limit) {
    Bytes datagram(longestDatagram);
    const auto deadline = Clock::now() + limit;
    for (;;) {
        pollfd watched{fd, POLLIN, 0};
        if (::poll(&watched, 1, static_cast<int>(timeUntil(deadline).count())) == 0) return std::nullopt;
        datagram.resize(longestDatagram);
        const auto length = ::recv(fd, datagram.data(), datagram.size(), MSG_DONTWAIT);
        if (length >= 0) {
            datagram.resize(static_cast<std::size_t>(length));
            if (wanted(datagram)) return datagram;
        }
        if (Clock::now() >= deadline) return std::nullopt;
    }
}

void ClientSocket::forget() {
    while (receive(std::chrono::milliseconds(0))) {
    }
}

bool ClientSocket::hears(const Bytes& datagram, std::chrono::milliseconds limit) {
    return receive([&](const Bytes& heard) { return heard == datagram; }, limit).has_value();
}

} // namespace lumbrine::end_to_end
