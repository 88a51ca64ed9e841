#include "platform/posix/stream_descriptor.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

namespace lumbrine {

namespace {

#if defined(MSG_NOSIGNAL)
constexpr int sendFlags = MSG_NOSIGNAL;
#else
constexpr int sendFlags = 0; // the constructor sets SO_NOSIGPIPE instead
#endif

sockaddr_in loopback(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return address;
}

void setOption(int fd, int level, int option) {
    const int on = 1;
    ::setsockopt(fd, level, option, &on, sizeof on);
}

} // namespace

StreamDescriptor::StreamDescriptor(int number) : fd(number) {
    if (fd < 0) return;
    ::fcntl(fd, F_SETFD, FD_CLOEXEC);
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) | O_NONBLOCK);
    setOption(fd, IPPROTO_TCP, TCP_NODELAY);
#if defined(SO_NOSIGPIPE)
    setOption(fd, SOL_SOCKET, SO_NOSIGPIPE);
#endif
}

StreamDescriptor::~StreamDescriptor() {
    if (fd >= 0) ::close(fd);
}

StreamDescriptor& StreamDescriptor::operator=(StreamDescriptor&& other) noexcept {
    if (this == &other) return *this;
    if (fd >= 0) ::close(fd);
    fd = std::exchange(other.fd, -1);
    return *this;
}

StreamDescriptor StreamDescriptor::listening(std::uint16_t port) {
    constexpr int mostPending = 64;
    StreamDescriptor socket(::socket(AF_INET, SOCK_STREAM, 0));
    setOption(socket.fd, SOL_SOCKET, SO_REUSEADDR);
    const sockaddr_in address = loopback(port);
    if (::bind(socket.fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(socket.fd, mostPending) != 0)
        return {};
    return socket;
}

StreamDescriptor StreamDescriptor::connected(std::uint16_t port) {
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    const sockaddr_in address = loopback(port);
    // On one computer, connect succeeds or fails at once. So the socket may block here; it is non-blocking afterwards.
    const bool done = ::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    StreamDescriptor socket(fd);
    if (!done) return {};
    return socket;
}

StreamDescriptor StreamDescriptor::accept() const {
    return StreamDescriptor(::accept(fd, nullptr, nullptr));
}

std::uint16_t StreamDescriptor::localPort() const {
    sockaddr_in address{};
    socklen_t length = sizeof address;
    ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length);
    return ntohs(address.sin_port);
}

int StreamDescriptor::send(ByteView bytes) const {
    const auto count = ::send(fd, bytes.data(), bytes.size(), sendFlags);
    if (count >= 0) return static_cast<int>(count);
    return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR ? 0 : -errno;
}

int StreamDescriptor::receive(std::span<std::uint8_t> buffer) const {
    const auto count = ::recv(fd, buffer.data(), buffer.size(), 0);
    if (count >= 0) return static_cast<int>(count);
    return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR ? nothingYet : -errno;
}

void StreamDescriptor::breakOnClose() const {
    const linger atOnce{.l_onoff = 1, .l_linger = 0};
    ::setsockopt(fd, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
}

} // namespace lumbrine
