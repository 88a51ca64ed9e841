#include "platform/virtual/virtual_streams.h"

#include "platform/virtual/virtual_connection.h"

#include <algorithm>
#include <cerrno>
#include <string>
#include <utility>

namespace lumbrine {

namespace {

constexpr const char* onlyHost = "127.0.0.1"; // the scripting service is always on the same computer

std::optional<TimePoint> deadlineAfter(const VirtualRuntime& runtime, std::optional<Duration> limit) {
    if (!limit) return std::nullopt;
    return runtime.now() + *limit;
}

} // namespace

VirtualStreams::VirtualStreams(VirtualRuntime& runtime) : runtime(runtime) {}

VirtualStreams::~VirtualStreams() = default;

void VirtualStreams::listen(std::uint16_t port, Service service, Duration latency) {
    listeners[port] = {std::move(service), latency};
}

void VirtualStreams::listenWithoutAccepting(std::uint16_t port) {
    listeners[port] = {};
}

void VirtualStreams::stopListening(std::uint16_t port) {
    listeners.erase(port);
}

void VirtualStreams::fail(Call call, int error, int times, int after) {
    failures[static_cast<std::size_t>(call)] = {error, times, after};
}

int VirtualStreams::injected(Call call) {
    Failure& failure = failures[static_cast<std::size_t>(call)];
    if (failure.error == 0 || failure.times == 0) return 0;
    if (failure.after > 0) {
        --failure.after;
        return 0;
    }
    if (failure.times > 0) --failure.times;
    return -failure.error;
}

std::shared_ptr<VirtualConnection> VirtualStreams::find(int fd) const {
    const auto found = sockets.find(fd);
    return found == sockets.end() ? nullptr : found->second;
}

int VirtualStreams::open() {
    if (const int error = injected(Call::open); error != 0) return error;
    if (ended) return -ESHUTDOWN;
    sockets[++lastDescriptor] = std::make_shared<VirtualConnection>(runtime);
    return lastDescriptor;
}

int VirtualStreams::connect(int fd, const std::string& host, std::uint16_t port, Duration limit) {
    runtime.yield("a connect");
    if (const int error = injected(Call::connect); error != 0) return error;
    const auto connection = find(fd);
    if (!connection) return -EBADF;
    if (connection->peer) return -EISCONN;
    if (ended) return -ESHUTDOWN;
    if (host != onlyHost) return -EHOSTUNREACH;
    const auto found = listeners.find(port);
    if (found == listeners.end()) return -ECONNREFUSED;
    const Listener listener = found->second;
    // A listener without a service never accepts: the connect waits for its whole time limit.
    const bool answered = listener.service && listener.latency <= limit;
    const TimePoint end = runtime.now() + (answered ? listener.latency : limit);
    while (runtime.now() < end && !ended)
        if (!waitFor(*connection, "a connection", end)) return -ECANCELED;
    if (ended) return -ESHUTDOWN;
    if (!answered) return -ETIMEDOUT;
    connection->peer = listener.service(VirtualLine(connection));
    return 0;
}

int VirtualStreams::setOption(int fd, Call call) {
    if (const int error = injected(call); error != 0) return error;
    return find(fd) ? 0 : -EBADF;
}

int VirtualStreams::setReceiveTimeout(int fd, Duration limit) {
    const int result = setOption(fd, Call::setReceiveTimeout);
    if (result == 0) find(fd)->receiveTimeout = limit;
    return result;
}

int VirtualStreams::setSendTimeout(int fd, Duration limit) {
    const int result = setOption(fd, Call::setSendTimeout);
    if (result == 0) find(fd)->sendTimeout = limit;
    return result;
}

int VirtualStreams::setNoDelay(int fd) {
    return setOption(fd, Call::setNoDelay);
}

int VirtualStreams::setNoSignal(int fd) {
    return setOption(fd, Call::setNoSignal);
}

// Waits for a change of the connection or for the deadline. Returns false when the runtime ends.
bool VirtualStreams::waitFor(VirtualConnection& connection, std::string_view what, std::optional<TimePoint> deadline) {
    return connection.changed->wait(what, deadline) || (deadline && runtime.now() >= *deadline);
}

int VirtualStreams::send(int fd, ByteView bytes) {
    runtime.yield("a send");
    if (const int error = injected(Call::send); error != 0) return error;
    const auto connection = find(fd);
    if (!connection) return -EBADF;
    if (!connection->peer) return -ENOTCONN;
    const auto deadline = deadlineAfter(runtime, connection->sendTimeout);
    for (;;) {
        if (ended) return -EPIPE;
        if (connection->wasReset) return -ECONNRESET;
        if (connection->reading) {
            // The service's code runs here, on the sender's thread: the service has no thread.
            connection->peer->received(bytes);
            return static_cast<int>(bytes.size());
        }
        // The service has stopped reading: bytes fill the buffer, and once that is full, send blocks.
        const std::size_t taken = std::min(bytes.size(), stalledCapacity - connection->unread.size());
        if (taken > 0) {
            connection->unread.insert(connection->unread.end(), bytes.begin(),
                                      bytes.begin() + static_cast<std::ptrdiff_t>(taken));
            return static_cast<int>(taken);
        }
        if (deadline && runtime.now() >= *deadline) return -EAGAIN;
        if (!waitFor(*connection, "room for what is sent", deadline)) return -ECANCELED;
    }
}

int VirtualStreams::receive(int fd, std::span<std::uint8_t> buffer) {
    runtime.yield("a receive");
    if (const int error = injected(Call::receive); error != 0) return error;
    const auto connection = find(fd);
    if (!connection) return -EBADF;
    if (!connection->peer) return -ENOTCONN;
    const auto deadline = deadlineAfter(runtime, connection->receiveTimeout);
    auto& arrivals = connection->arrivals;
    for (;;) {
        if (ended) return 0;
        if (connection->wasReset) return -ECONNRESET;
        if (!arrivals.empty() && arrivals.front().due <= runtime.now()) {
            VirtualConnection::Arrival& first = arrivals.front();
            if (first.bytes.empty()) return 0; // the end of the stream; it stays, so that every later receive sees it
            const std::size_t size = std::min(buffer.size(), first.bytes.size() - first.received);
            std::copy_n(first.bytes.begin() + static_cast<std::ptrdiff_t>(first.received), size, buffer.begin());
            first.received += size;
            if (first.received == first.bytes.size()) arrivals.pop_front();
            return static_cast<int>(size);
        }
        if (deadline && runtime.now() >= *deadline) return -EAGAIN;
        std::optional<TimePoint> next = deadline;
        if (!arrivals.empty()) next = std::min(deadline.value_or(TimePoint::max()), arrivals.front().due);
        if (!waitFor(*connection, "bytes", next)) return -ECANCELED;
    }
}

void VirtualStreams::close(int fd) {
    if (const auto connection = find(fd)) connection->changed->notifyAll();
    sockets.erase(fd);
}

void VirtualStreams::shutDown() {
    ended = true;
    for (const auto& [fd, connection] : sockets)
        connection->changed->notifyAll();
}

} // namespace lumbrine
