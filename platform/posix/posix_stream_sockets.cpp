#include "platform/posix/posix_stream_sockets.h"

#include "platform/posix/system_call.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sched.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>

namespace lumbrine {

namespace {

// macOS has no such flag; setNoSignal sets the option SO_NOSIGPIPE there.
#if defined(MSG_NOSIGNAL)
constexpr int sendFlags = MSG_NOSIGNAL;
#else
constexpr int sendFlags = 0;
#endif

// Only Linux can hold bytes back. Elsewhere they leave at once.
#if defined(MSG_MORE)
constexpr int holdBack = MSG_MORE;
#else
constexpr int holdBack = 0;
#endif

constexpr std::chrono::microseconds watching{500};

int setTimeout(int fd, int option, Duration limit) {
    const auto microseconds = std::chrono::ceil<std::chrono::microseconds>(limit).count();
    if (microseconds <= 0) return -EINVAL; // 0 would mean "no limit"
    timeval value{};
    value.tv_sec = static_cast<decltype(value.tv_sec)>(microseconds / 1'000'000);
    value.tv_usec = static_cast<decltype(value.tv_usec)>(microseconds % 1'000'000);
    return orError(::setsockopt(fd, SOL_SOCKET, option, &value, sizeof value));
}

// Waits until a connection attempt has ended. Returns 0 or a negative errno value.
int finishConnecting(int fd, Duration limit) {
    using Clock = std::chrono::steady_clock;
    const auto deadline = Clock::now() + limit;
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0) return -ETIMEDOUT;
        pollfd waiting{fd, POLLOUT, 0};
        const int ready = ::poll(&waiting, 1, static_cast<int>(left));
        if (ready < 0 && errno != EINTR) return -errno;
        if (ready > 0) break;
    }
    int error = 0;
    socklen_t length = sizeof error;
    if (::getsockopt(fd, SOL_SOCKET, SO_ERROR, &error, &length) < 0) return -errno;
    return -error;
}

} // namespace

int PosixStreamSockets::open() {
    const std::lock_guard held(lock);
    if (ended) return -ESHUTDOWN;
    const int fd = orError(::socket(AF_INET, SOCK_STREAM, 0));
    if (fd >= 0) sockets.insert(fd);
    return fd;
}

int PosixStreamSockets::connect(int fd, const std::string& host, std::uint16_t port, Duration limit) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    if (::inet_pton(AF_INET, host.c_str(), &address.sin_addr) != 1) return -EINVAL;
    {
        const std::lock_guard held(lock);
        if (ended) return -ESHUTDOWN;
    }
    // Non-blocking while it connects, because a blocking connect may wait for minutes.
    const int flags = orError(::fcntl(fd, F_GETFL));
    if (flags < 0) return flags;
    if (::fcntl(fd, F_SETFL, flags | O_NONBLOCK) < 0) return -errno;
    int result = orError(::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address));
    if (result == -EINPROGRESS || result == -EINTR) result = finishConnecting(fd, limit);
    if (result < 0) return result;
    return orError(::fcntl(fd, F_SETFL, flags));
}

int PosixStreamSockets::setReceiveTimeout(int fd, Duration limit) {
    return setTimeout(fd, SO_RCVTIMEO, limit);
}

int PosixStreamSockets::setSendTimeout(int fd, Duration limit) {
    return setTimeout(fd, SO_SNDTIMEO, limit);
}

int PosixStreamSockets::setNoDelay(int fd) {
    return setSocketOption(fd, IPPROTO_TCP, TCP_NODELAY, 1);
}

int PosixStreamSockets::setNoSignal([[maybe_unused]] int fd) {
#if defined(SO_NOSIGPIPE)
    return setSocketOption(fd, SOL_SOCKET, SO_NOSIGPIPE, 1);
#else
    return 0;
#endif
}

int PosixStreamSockets::send(int fd, ByteView bytes) {
    return orError(::send(fd, bytes.data(), bytes.size(), sendFlags));
}

int PosixStreamSockets::sendSoon(int fd, ByteView bytes) {
    return orError(::send(fd, bytes.data(), bytes.size(), sendFlags | holdBack));
}

int PosixStreamSockets::receive(int fd, std::span<std::uint8_t> buffer) {
    const auto asleep = std::chrono::steady_clock::now() + watching;
    do {
        const int received = orError(::recv(fd, buffer.data(), buffer.size(), MSG_DONTWAIT));
        if (received != -EAGAIN) return received;
        ::sched_yield(); // the service may need this core to answer
    } while (std::chrono::steady_clock::now() < asleep);
    return orError(::recv(fd, buffer.data(), buffer.size(), 0));
}

void PosixStreamSockets::close(int fd) {
    const std::lock_guard held(lock);
    sockets.erase(fd);
    ::close(fd);
}

void PosixStreamSockets::shutDown() {
    const std::lock_guard held(lock);
    ended = true;
    for (const int fd : sockets)
        ::shutdown(fd, SHUT_RDWR);
}

} // namespace lumbrine
