#include "tests/simulation/recording_sockets.h"

namespace lumbrine::simulation {

namespace {

bool isMeters(ByteView datagram) {
    return datagram.size() > 1 && datagram[1] == 0x11;
}

} // namespace

int RecordingSockets::receive(int fd, std::span<std::uint8_t> buffer, PeerAddress& from) {
    const int length = sockets.receive(fd, buffer, from);
    if (length > 0) {
        std::string host;
        std::string port;
        sockets.name(from, host, port);
        const auto end = buffer.begin() + length;
        record.push_back({runtime.now(), host + ":" + port, Bytes(buffer.begin(), end)});
    }
    return length;
}

int RecordingSockets::send(int fd, ByteView bytes, const PeerAddress& to) {
    if (onSend) onSend(bytes);
    if (isMeters(bytes) && !carriesMeters) return static_cast<int>(bytes.size());
    return sockets.send(fd, bytes, to);
}

} // namespace lumbrine::simulation
