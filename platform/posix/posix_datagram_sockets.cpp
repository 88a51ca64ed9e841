#include "platform/posix/posix_datagram_sockets.h"

#include "platform/posix/packet_info.h"
#include "platform/posix/system_call.h"

#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <memory>

namespace lumbrine {

namespace {

static_assert(sizeof(sockaddr_storage) <= sizeof(PeerAddress::storage));

const sockaddr* systemAddress(const PeerAddress& address) {
    return reinterpret_cast<const sockaddr*>(address.storage.data());
}

// On systems whose sockaddr has a length field, the field stays 0: the calls use their length argument.
PeerAddress addressOf(const in6_addr& host, std::uint16_t port, std::uint32_t scope = 0) {
    sockaddr_in6 system{};
    system.sin6_family = AF_INET6;
    system.sin6_addr = host;
    system.sin6_port = htons(port);
    system.sin6_scope_id = scope;
    PeerAddress address;
    std::memcpy(address.storage.data(), &system, sizeof system);
    address.length = sizeof system;
    return address;
}

in6_addr mappedLoopback() {
    constexpr std::array<std::uint8_t, 16> bytes{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF, 127, 0, 0, 1};
    in6_addr host;
    std::memcpy(&host, bytes.data(), bytes.size());
    return host;
}

// Sends from the address that the peer spoke to.
int sendAnswer(int fd, ByteView bytes, const PeerAddress& to) {
    PacketInfo info;
    iovec content{const_cast<std::uint8_t*>(bytes.data()), bytes.size()};
    msghdr message{};
    message.msg_name = const_cast<std::uint8_t*>(to.storage.data());
    message.msg_namelen = to.length;
    message.msg_iov = &content;
    message.msg_iovlen = 1;
    info.sendWith(message, to.spokenTo);
    for (;;) {
        const auto sent = ::sendmsg(fd, &message, MSG_DONTWAIT);
        if (sent >= 0) return static_cast<int>(sent);
        if (errno != EINTR) return -errno;
    }
}

} // namespace

int PosixDatagramSockets::open() {
    const int fd = orError(::socket(AF_INET6, SOCK_DGRAM, 0));
    if (fd >= 0) setReportsOwnAddress(fd); // a system that cannot leaves `spokenTo` unknown
    return fd;
}

int PosixDatagramSockets::setReuseAddress(int fd) {
    return setSocketOption(fd, SOL_SOCKET, SO_REUSEADDR, 1);
}

int PosixDatagramSockets::setDualStack(int fd) {
    return setSocketOption(fd, IPPROTO_IPV6, IPV6_V6ONLY, 0);
}

int PosixDatagramSockets::bind(int fd, std::uint16_t port) {
    const PeerAddress address = addressOf(in6addr_any, port);
    return orError(::bind(fd, systemAddress(address), address.length));
}

int PosixDatagramSockets::localPort(int fd) {
    sockaddr_in6 system{};
    socklen_t length = sizeof system;
    if (::getsockname(fd, reinterpret_cast<sockaddr*>(&system), &length) < 0) return -errno;
    return ntohs(system.sin6_port);
}

bool PosixDatagramSockets::isOwnAddress(int fd, const PeerAddress& address) {
    sockaddr_in6 system{};
    if (address.length != sizeof system) return false;
    std::memcpy(&system, address.storage.data(), sizeof system);
    if (ntohs(system.sin6_port) != localPort(fd)) return false;
    // A socket can be bound to the addresses of this computer only.
    const int probe = open();
    if (probe < 0) return false;
    setDualStack(probe);
    const PeerAddress anyPort = addressOf(system.sin6_addr, 0, system.sin6_scope_id);
    const bool isHere = ::bind(probe, systemAddress(anyPort), anyPort.length) == 0;
    ::close(probe);
    return isHere;
}

int PosixDatagramSockets::receive(int fd, std::span<std::uint8_t> buffer, PeerAddress& from) {
    if (isShutDown(fd)) return -ESHUTDOWN;
    for (;;) {
        PacketInfo info;
        iovec content{buffer.data(), buffer.size()};
        msghdr message{};
        message.msg_name = from.storage.data();
        message.msg_namelen = sizeof from.storage;
        message.msg_iov = &content;
        message.msg_iovlen = 1;
        info.receiveWith(message);
        const auto received = ::recvmsg(fd, &message, 0);
        const int failure = received < 0 ? errno : 0;
        if (isShutDown(fd)) return -ESHUTDOWN; // what arrived may be the datagram that shutDown sends to wake us
        if (failure == 0) {
            from.length = message.msg_namelen;
            from.spokenTo = PacketInfo::sentTo(message);
            return static_cast<int>(received);
        }
        if (failure != EINTR) return -failure;
    }
}

int PosixDatagramSockets::send(int fd, ByteView bytes, const PeerAddress& to) {
    if (to.spokenTo != OwnAddress{}) {
        const int sent = sendAnswer(fd, bytes, to);
        if (sent >= 0 || sent == -EAGAIN || sent == -ENOBUFS) return sent;
        // That address is not ours any more, or none to send from: a broadcast. Systems have several errors for it.
    }
    for (;;) {
        const auto sent = ::sendto(fd, bytes.data(), bytes.size(), MSG_DONTWAIT, systemAddress(to), to.length);
        if (sent >= 0) return static_cast<int>(sent);
        if (errno != EINTR) return -errno;
    }
}

void PosixDatagramSockets::name(const PeerAddress& address, std::string& host, std::string& port) {
    std::array<char, 1025> hostText{};
    std::array<char, 32> portText{};
    const int failed = ::getnameinfo(systemAddress(address), address.length, hostText.data(), hostText.size(),
                                     portText.data(), portText.size(), NI_NUMERICHOST | NI_NUMERICSERV);
    host.assign(failed != 0 ? "" : hostText.data());
    port.assign(failed != 0 ? "" : portText.data());
}

bool PosixDatagramSockets::resolve(const std::string& host, std::uint16_t port, PeerAddress& address) {
    addrinfo hints{};
    hints.ai_family = AF_INET6;
    hints.ai_socktype = SOCK_DGRAM;
    hints.ai_flags = AI_V4MAPPED | AI_NUMERICSERV; // IPv4 hosts as ::ffff:a.b.c.d, which an IPv6 socket can send to
    addrinfo* found = nullptr;
    if (::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &found) != 0) return false;
    const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> release(found, &::freeaddrinfo);
    if (found == nullptr || found->ai_addrlen > address.storage.size()) return false;
    address = PeerAddress{};
    std::memcpy(address.storage.data(), found->ai_addr, found->ai_addrlen);
    address.length = found->ai_addrlen;
    return true;
}

void PosixDatagramSockets::shutDown(int fd) {
    {
        const std::lock_guard held(lock);
        shutDownSockets.insert(fd);
        shutDownCount = static_cast<int>(shutDownSockets.size());
    }
    // A waiting `receive` checks the set whenever anything arrives, so an empty datagram to our own port wakes it on
    // every system. ::shutdown wakes it on some systems only, but there it also works without a loopback interface.
    if (const int port = localPort(fd); port > 0)
        for (const in6_addr& loopback : {in6addr_loopback, mappedLoopback()})
            send(fd, {}, addressOf(loopback, static_cast<std::uint16_t>(port)));
    ::shutdown(fd, SHUT_RD);
}

void PosixDatagramSockets::close(int fd) {
    const std::lock_guard held(lock);
    shutDownSockets.erase(fd);
    shutDownCount = static_cast<int>(shutDownSockets.size());
    ::close(fd);
}

bool PosixDatagramSockets::isAmongShutDown(int fd) {
    const std::lock_guard held(lock);
    return shutDownSockets.contains(fd);
}

} // namespace lumbrine
