// UDP sockets whose datagrams are recorded.
#pragma once

#include "platform/api/datagram_sockets.h"
#include "platform/recorded/recorder.h"

namespace lumbrine {

class RecordedSockets final : public DatagramSockets {
public:
    // Reads an address of the sockets that are recorded. Called on every thread that uses them.
    using AddressReader = blackbox::NumericAddress (*)(const PeerAddress& peer);

    // All outlive it.
    RecordedSockets(DatagramSockets& recorded, const Recorder& itsRecorder, AddressReader addressReader)
        : sockets(recorded), recorder(itsRecorder), read(addressReader) {}

    int open() override;
    int setReuseAddress(int fd) override { return sockets.setReuseAddress(fd); }
    int setDualStack(int fd) override { return sockets.setDualStack(fd); }
    int bind(int fd, std::uint16_t port) override;
    int localPort(int fd) override { return sockets.localPort(fd); }
    bool isOwnAddress(int fd, const PeerAddress& address) override;
    int receive(int fd, std::span<std::uint8_t> buffer, PeerAddress& from) override;
    int send(int fd, ByteView bytes, const PeerAddress& to) override;
    void name(const PeerAddress& address, std::string& host, std::string& port) override {
        sockets.name(address, host, port);
    }
    bool resolve(const std::string& host, std::uint16_t port, PeerAddress& address) override {
        return sockets.resolve(host, port, address);
    }
    void shutDown(int fd) override { sockets.shutDown(fd); }
    void close(int fd) override;

private:
    void note(blackbox::Kind kind, const PeerAddress& peer, int result, ByteView bytes) const;
    void note(blackbox::SocketEvent event, int result, std::uint16_t port = 0) const;

    DatagramSockets& sockets;
    const Recorder& recorder;
    const AddressReader read;
};

} // namespace lumbrine
