#include "platform/recorded/recorded_streams.h"

#include <algorithm>

namespace lumbrine {

using blackbox::bytesOf;
using blackbox::Kind;
using blackbox::StreamEvent;
using blackbox::textBytes;

int RecordedStreams::connect(int fd, const std::string& host, std::uint16_t port, Duration limit) {
    const int result = sockets.connect(fd, host, port, limit);
    note(StreamEvent::connected, fd, result, host + ":" + std::to_string(port));
    return result;
}

int RecordedStreams::receive(int fd, std::span<std::uint8_t> buffer) {
    const int size = sockets.receive(fd, buffer);
    if (size > 0) {
        note(Kind::streamIn, fd, buffer.first(static_cast<std::size_t>(size)));
    } else {
        note(StreamEvent::receiveEnded, fd, size);
    }
    return size;
}

void RecordedStreams::close(int fd) {
    sockets.close(fd);
    note(StreamEvent::closed, fd, 0);
}

int RecordedStreams::sent(int fd, ByteView bytes, int result) const {
    if (result < 0) {
        note(StreamEvent::sendFailed, fd, result);
    } else {
        note(Kind::streamOut, fd, bytes.first(static_cast<std::size_t>(result)));
    }
    return result;
}

// What is longer than one record may be takes several.
void RecordedStreams::note(Kind kind, int fd, ByteView bytes) const {
    while (!bytes.empty()) {
        const ByteView piece = bytes.first(std::min(bytes.size(), blackbox::largestPayload));
        recorder.note(kind, static_cast<std::uint8_t>(fd), {piece});
        bytes = bytes.subspan(piece.size());
    }
}

void RecordedStreams::note(StreamEvent event, int fd, int result, std::string_view peer) const {
    const blackbox::StreamHead head{.result = result, .event = event};
    recorder.note(Kind::stream, static_cast<std::uint8_t>(fd), {bytesOf(head), textBytes(peer)});
}

} // namespace lumbrine
