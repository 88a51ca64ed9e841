// TCP client sockets whose bytes are recorded.
#pragma once

#include "platform/api/stream_socket.h"
#include "platform/recorded/recorder.h"

namespace lumbrine {

class RecordedStreams final : public StreamSockets {
public:
    // Both outlive it.
    RecordedStreams(StreamSockets& recorded, const Recorder& itsRecorder) : sockets(recorded), recorder(itsRecorder) {}

    int open() override { return sockets.open(); }
    int connect(int fd, const std::string& host, std::uint16_t port, Duration limit) override;
    int setReceiveTimeout(int fd, Duration limit) override { return sockets.setReceiveTimeout(fd, limit); }
    int setSendTimeout(int fd, Duration limit) override { return sockets.setSendTimeout(fd, limit); }
    int setNoDelay(int fd) override { return sockets.setNoDelay(fd); }
    int setNoSignal(int fd) override { return sockets.setNoSignal(fd); }
    int send(int fd, ByteView bytes) override { return sent(fd, bytes, sockets.send(fd, bytes)); }
    int sendSoon(int fd, ByteView bytes) override { return sent(fd, bytes, sockets.sendSoon(fd, bytes)); }
    int receive(int fd, std::span<std::uint8_t> buffer) override;
    void close(int fd) override;
    void shutDown() override { sockets.shutDown(); }

private:
    int sent(int fd, ByteView bytes, int result) const;
    void note(blackbox::Kind kind, int fd, ByteView bytes) const;
    void note(blackbox::StreamEvent event, int fd, int result, std::string_view peer = {}) const;

    StreamSockets& sockets;
    const Recorder& recorder;
};

} // namespace lumbrine
