#include "tests/simulation/recording_sockets.h"

#include "tests/simulation/trace.h"

#include <algorithm>
#include <utility>

namespace lumbrine::simulation {

namespace {

bool isMeters(ByteView datagram) {
    return datagram.size() > 1 && datagram[1] == 0x11;
}

} // namespace

int RecordingSockets::receive(int fd, std::span<std::uint8_t> buffer, PeerAddress& from) {
    const int length = sockets.receive(fd, buffer, from);
    if (length <= 0) return length;
    std::string sender = nameOf(from); // first: threads may stand still in it
    record.push_back({runtime.now(), std::move(sender), Bytes(buffer.begin(), buffer.begin() + length)});
    if (trace != nullptr)
        trace->traffic.note(runtime.now(), "from client " + record.back().sender, record.back().bytes);
    return length;
}

std::string RecordingSockets::nameOf(const PeerAddress& address) {
    std::string host;
    std::string port;
    sockets.name(address, host, port);
    return host + ":" + port;
}

std::size_t RecordingSockets::peerAt(const PeerAddress& address) {
    const auto same = std::ranges::find_if(addresses, [&](const PeerAddress& known) {
        return known.length == address.length &&
               std::equal(known.storage.begin(), known.storage.begin() + known.length, address.storage.begin());
    });
    const auto index = static_cast<std::size_t>(same - addresses.begin());
    if (same == addresses.end()) {
        addresses.push_back(address);
        outgoing.peers.push_back(nameOf(address));
    }
    return index;
}

void RecordingSockets::note(ByteView bytes, const PeerAddress& to) {
    outgoing.list.push_back({runtime.now(), peerAt(to), Bytes(bytes.begin(), bytes.end())});
}

int RecordingSockets::send(int fd, ByteView bytes, const PeerAddress& to) {
    if (onSend) onSend(bytes);
    if (trace != nullptr) trace->traffic.note(runtime.now(), "to client " + nameOf(to), bytes);
    if (!isMeters(bytes)) note(bytes, to);
    if (isMeters(bytes) && !carriesMeters) return static_cast<int>(bytes.size());
    return sockets.send(fd, bytes, to);
}

} // namespace lumbrine::simulation
