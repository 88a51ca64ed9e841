#include "tests/simulation/recording_sockets.h"

namespace lumbrine::simulation {

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

} // namespace lumbrine::simulation
