#include "tests/end_to_end/played_receiver.h"

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

namespace lumbrine::end_to_end {

namespace {

sockaddr_in onLoopback(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return address;
}

// What the system holds for a UDP port of this computer. Its table has a line for each socket:
//    7: 0100007F:CDE2 0100007F:8F3B 01 00000000:00000300 ...
//       address:port  of the peer   state  send:receive queue
long bytesWaitingAt(std::uint16_t port) {
    std::ifstream table("/proc/net/udp");
    std::string line;
    for (std::getline(table, line); std::getline(table, line);) {
        std::istringstream words(line);
        std::string number, own, other, state, queues;
        words >> number >> own >> other >> state >> queues;
        if (std::stoul(own.substr(own.find(':') + 1), nullptr, 16) == port)
            return std::stol(queues.substr(queues.find(':') + 1), nullptr, 16);
    }
    return 0;
}

} // namespace

PlayedReceiver::PlayedReceiver() {
    open();
}

PlayedReceiver::~PlayedReceiver() {
    close();
}

void PlayedReceiver::open() {
    fd = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    ::setsockopt(fd, IPPROTO_IP, IP_RECVERR, &on, sizeof on); // so that refusals are reported
    sockaddr_in address = onLoopback(ownPort);
    socklen_t length = sizeof address;
    if (::bind(fd, reinterpret_cast<const sockaddr*>(&address), length) != 0) throw std::runtime_error("no port");
    ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length);
    ownPort = ntohs(address.sin_port);
}

void PlayedReceiver::close() {
    ::close(fd);
}

std::optional<Bytes> PlayedReceiver::receive(std::chrono::milliseconds limit) {
    pollfd watched{fd, POLLIN, 0};
    if (::poll(&watched, 1, static_cast<int>(limit.count())) == 0) return std::nullopt;
    Bytes datagram(65536);
    sockaddr_in from{};
    socklen_t length = sizeof from;
    const auto size =
        ::recvfrom(fd, datagram.data(), datagram.size(), MSG_DONTWAIT, reinterpret_cast<sockaddr*>(&from), &length);
    if (size < 0) return std::nullopt;
    peer = ntohs(from.sin_port);
    datagram.resize(static_cast<std::size_t>(size));
    return datagram;
}

void PlayedReceiver::answer(ByteView datagram) {
    const sockaddr_in address = onLoopback(peer);
    ::sendto(fd, datagram.data(), datagram.size(), 0, reinterpret_cast<const sockaddr*>(&address), sizeof address);
}

std::uint16_t PlayedReceiver::peerPort() const {
    return peer;
}

bool PlayedReceiver::wasRefused() {
    msghdr nothing{};
    return ::recvmsg(fd, &nothing, MSG_ERRQUEUE | MSG_DONTWAIT) >= 0;
}

void PlayedReceiver::waitUntilTaken() const {
    interop::waitUntil([&] { return bytesWaitingAt(peer) == 0; });
}

} // namespace lumbrine::end_to_end
