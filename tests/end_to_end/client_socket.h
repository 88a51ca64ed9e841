// For tests: a client of the receiver as a bare UDP socket, without knowledge of the protocol.
#pragma once

#include "base/bytes.h"
#include "tests/interop/waiting.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>

namespace lumbrine::end_to_end {

// A UDP port of this computer that is free now.
std::uint16_t freePort();

// A socket that occupies a port exclusively, as another program may.
class PortHolder {
public:
    PortHolder();
    ~PortHolder();
    PortHolder(const PortHolder&) = delete;
    PortHolder& operator=(const PortHolder&) = delete;

    std::uint16_t port() const;

private:
    const int fd;
};

// Sends to one port of an address of this computer and receives what comes back from there, nothing else. One thread.
class ClientSocket {
public:
    explicit ClientSocket(std::uint16_t receiverPort, const char* receiverAddress = "127.0.0.1");
    ~ClientSocket();
    ClientSocket(const ClientSocket&) = delete;
    ClientSocket& operator=(const ClientSocket&) = delete;

    void send(ByteView datagram);

    // The next datagram; absent when none arrives in time.
    std::optional<Bytes> receive(std::chrono::milliseconds limit = interop::patience);

    // The next datagram for which `wanted` is true; earlier ones are dropped.
    std::optional<Bytes> receive(const std::function<bool(const Bytes&)>& wanted,
                                 std::chrono::milliseconds limit = interop::patience);

    // True when exactly this datagram arrives; earlier ones are dropped.
    bool hears(const Bytes& datagram, std::chrono::milliseconds limit = interop::patience);

    // Drops the datagrams received so far. A socket that is not read is full after a few seconds and loses the rest.
    void forget();

private:
    const int fd;
};

} // namespace lumbrine::end_to_end
