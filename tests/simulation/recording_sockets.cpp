#include "tests/simulation/recording_sockets.h"

namespace lumbrine::simulation {

namespace {

bool isMeters(ByteView datagram) {
    return datagram.size() > 1 && datagram[1] == 0x11;
}

} // namespace

int RecordingSockets::receive(int fd, std::span<std::uint8_t> buffer, PeerAddress& from) {
    const int length = sockets.receive(fd, buffer, from);
    if (length > 0) record.push_back({runtime.now(), nameOf(from), Bytes(buffer.begin(), buffer.begin() + length)});
    return length;
}

int RecordingSockets::send(int fd, ByteView bytes, const PeerAddress& to) {
    if (onSend) onSend(bytes);
    if (notesSends && bytes.size() > 1) sends.push_back({runtime.now(), nameOf(to), bytes[1]});
    if (isMeters(bytes) && !carriesMeters) return static_cast<int>(bytes.size());
    return sockets.send(fd, bytes, to);
}

std::string RecordingSockets::nameOf(const PeerAddress& address) {
    std::string host;
    std::string port;
    sockets.name(address, host, port);
    return host + ":" + port;
}

} // namespace lumbrine::simulation
