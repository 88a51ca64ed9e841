#include "tests/end_to_end/web_client.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <stdexcept>

namespace lumbrine::end_to_end {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

int connectTo(std::uint16_t port, const std::string& address) {
    sockaddr_in6 place{};
    place.sin6_family = AF_INET6;
    place.sin6_port = htons(port);
    const bool isIPv6 = address.find(':') != std::string::npos;
    if (::inet_pton(AF_INET6, (isIPv6 ? address : "::ffff:" + address).c_str(), &place.sin6_addr) != 1)
        throw std::runtime_error("no address: " + address);
    const int fd = ::socket(AF_INET6, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (::connect(fd, reinterpret_cast<const sockaddr*>(&place), sizeof place) != 0)
        throw std::runtime_error("nobody listens on TCP port " + std::to_string(port));
    const int on = 1;
    ::setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    return fd;
}

std::size_t bodyLength(const std::string& head) {
    const std::string field = "Content-Length: ";
    const std::size_t place = head.find(field);
    return place == std::string::npos ? 0 : std::stoul(head.substr(place + field.size()));
}

} // namespace

std::uint16_t freeTCPPort() {
    const int fd = ::socket(AF_INET6, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in6 any{};
    any.sin6_family = AF_INET6;
    socklen_t length = sizeof any;
    const bool bound = ::bind(fd, reinterpret_cast<const sockaddr*>(&any), length) == 0 &&
                       ::getsockname(fd, reinterpret_cast<sockaddr*>(&any), &length) == 0;
    ::close(fd);
    if (!bound) throw std::runtime_error("no free TCP port");
    return ntohs(any.sin6_port);
}

TCPConnection::TCPConnection(std::uint16_t port, const std::string& address) : fd(connectTo(port, address)) {}

TCPConnection::~TCPConnection() {
    ::close(fd);
}

void TCPConnection::write(ByteView bytes) {
    while (!bytes.empty()) {
        const auto written = ::send(fd, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (written <= 0) return;
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
}

void TCPConnection::write(const std::string& text) {
    write(ByteView(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
}

bool TCPConnection::receiveMore(Clock::time_point deadline) {
    const auto left = std::max(std::chrono::ceil<milliseconds>(deadline - Clock::now()), milliseconds(0));
    pollfd watched{fd, POLLIN, 0};
    if (::poll(&watched, 1, static_cast<int>(left.count())) == 0) return false;
    std::array<std::uint8_t, 65536> more{};
    const auto length = ::recv(fd, more.data(), more.size(), MSG_DONTWAIT);
    if (length <= 0) return false;
    received.insert(received.end(), more.begin(), more.begin() + length);
    return true;
}

std::optional<Bytes> TCPConnection::read(std::size_t count, milliseconds limit) {
    const auto deadline = Clock::now() + limit;
    while (received.size() < count)
        if (!receiveMore(deadline)) return std::nullopt;
    const auto end = received.begin() + static_cast<std::ptrdiff_t>(count);
    Bytes bytes(received.begin(), end);
    received.erase(received.begin(), end);
    return bytes;
}

std::optional<std::string> TCPConnection::readTo(const std::string& text) {
    const auto deadline = Clock::now() + interop::patience;
    for (;;) {
        const auto found = std::search(received.begin(), received.end(), text.begin(), text.end());
        if (found != received.end()) {
            const auto bytes = read(static_cast<std::size_t>(found - received.begin()) + text.size());
            return std::string(bytes->begin(), bytes->end());
        }
        if (!receiveMore(deadline)) return std::nullopt;
    }
}

bool TCPConnection::closes(milliseconds limit) {
    const auto deadline = Clock::now() + limit;
    while (receiveMore(deadline)) {
    }
    return Clock::now() < deadline;
}

std::string TCPConnection::exchange(const std::string& request) {
    write(request);
    const std::string head = readTo("\r\n\r\n").value_or("");
    const Bytes body = read(bodyLength(head)).value_or(Bytes{});
    return head + std::string(body.begin(), body.end());
}

WebClient::WebClient(std::uint16_t port, const SocketRequest& request) : connection(port) {
    const std::string host = request.host.empty() ? "127.0.0.1:" + std::to_string(port) : request.host;
    connection.write("GET " + request.target + " HTTP/1.1\r\nHost: " + host +
                     "\r\nOrigin: " + (request.origin.empty() ? "http://" + host : request.origin) +
                     "\r\nConnection: Upgrade\r\nUpgrade: websocket\r\nSec-WebSocket-Version: 13"
                     "\r\nSec-WebSocket-Key: AAAAAAAAAAAAAAAAAAAAAA==\r\nSec-WebSocket-Protocol: lumbrine, key-" +
                     request.key + "\r\n\r\n");
    const std::string head = connection.readTo("\r\n\r\n").value_or("");
    if (head.starts_with("HTTP/1.1 ")) statusCode = std::stoi(head.substr(9));
}

void WebClient::send(ByteView payload, int opcode) {
    Bytes frame{static_cast<std::uint8_t>(0x80 | opcode)};
    if (payload.size() < 126) {
        frame.push_back(static_cast<std::uint8_t>(0x80 | payload.size()));
    } else {
        append(frame, Bytes{0x80 | 126, static_cast<std::uint8_t>(payload.size() >> 8),
                            static_cast<std::uint8_t>(payload.size())});
    }
    append(frame, Bytes(4, 0x00)); // a mask that leaves everything as it is
    append(frame, payload);
    connection.write(frame);
}

std::optional<WebClient::Frame> WebClient::receive(milliseconds limit) {
    const auto head = connection.read(2, limit);
    if (!head) return std::nullopt;
    std::size_t length = (*head)[1];
    for (std::size_t i = length == 127 ? 8 : length == 126 ? 2 : 0, first = i; i > 0; --i) {
        if (i == first) length = 0;
        length = length << 8 | connection.read(1).value_or(Bytes{0}).front();
    }
    auto payload = connection.read(length);
    if (!payload) return std::nullopt;
    return Frame{(*head)[0] & 0x0F, std::move(*payload)};
}

std::optional<Bytes> WebClient::receive(const std::function<bool(const Bytes&)>& wanted, milliseconds limit) {
    const auto deadline = Clock::now() + limit;
    while (Clock::now() < deadline) {
        auto frame = receive(std::chrono::ceil<milliseconds>(deadline - Clock::now()));
        if (!frame || frame->opcode == closing) return std::nullopt;
        if (frame->opcode == binary && wanted(frame->payload)) return std::move(frame->payload);
    }
    return std::nullopt;
}

bool WebClient::hears(const Bytes& message, milliseconds limit) {
    return receive([&](const Bytes& heard) { return heard == message; }, limit).has_value();
}

std::optional<int> WebClient::closeCode(milliseconds limit) {
    const auto deadline = Clock::now() + limit;
    while (Clock::now() < deadline) {
        const auto frame = receive(std::chrono::ceil<milliseconds>(deadline - Clock::now()));
        if (!frame) return std::nullopt;
        if (frame->opcode != closing) continue;
        send(frame->payload, closing);
        return frame->payload.size() < 2 ? 0 : frame->payload[0] << 8 | frame->payload[1];
    }
    return std::nullopt;
}

} // namespace lumbrine::end_to_end
