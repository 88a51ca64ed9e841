#include "platform/recorded/recorded_sockets.h"

namespace lumbrine {

using blackbox::bytesOf;
using blackbox::Kind;
using blackbox::SocketEvent;

int RecordedSockets::open() {
    const int fd = sockets.open();
    note(SocketEvent::opened, fd);
    return fd;
}

int RecordedSockets::bind(int fd, std::uint16_t port) {
    const int result = sockets.bind(fd, port);
    note(SocketEvent::bound, result, port);
    return result;
}

int RecordedSockets::receive(int fd, std::span<std::uint8_t> buffer, PeerAddress& from) {
    const int size = sockets.receive(fd, buffer, from);
    if (size < 0) {
        note(SocketEvent::receiveFailed, size);
    } else {
        note(Kind::datagramIn, from, 0, buffer.first(static_cast<std::size_t>(size)));
    }
    return size;
}

// Seldom true: somebody answers the receiver with its own datagrams.
bool RecordedSockets::isOwnAddress(int fd, const PeerAddress& address) {
    const bool isOwn = sockets.isOwnAddress(fd, address);
    if (isOwn) note(SocketEvent::ownAddress, 0);
    return isOwn;
}

// Recorded when it has gone, so that a client does not wait for it.
int RecordedSockets::send(int fd, ByteView bytes, const PeerAddress& to) {
    const int result = sockets.send(fd, bytes, to);
    note(Kind::datagramOut, to, result < 0 ? result : 0, bytes);
    return result;
}

void RecordedSockets::close(int fd) {
    sockets.close(fd);
    note(SocketEvent::closed, 0);
}

void RecordedSockets::note(Kind kind, const PeerAddress& peer, int result, ByteView bytes) const {
    const blackbox::DatagramHead head{.peer = read(peer), .result = result};
    recorder.note(kind, 0, {bytesOf(head), bytes});
}

void RecordedSockets::note(SocketEvent event, int result, std::uint16_t port) const {
    const blackbox::SocketHead head{.result = result, .port = port};
    recorder.note(Kind::socket, event, {bytesOf(head)});
}

} // namespace lumbrine
