// A client of the receiver as the network sees one: a UDP socket, and nothing that knows the protocol.
#pragma once

#include "base/bytes.h"
#include "tests/interop/waiting.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>

namespace lumbrine::end_to_end {

// A UDP port of this computer that nobody uses at the moment.
std::uint16_t freePort();

// A socket that holds a port for itself alone, as another program does.
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

// Sends to one port of 127.0.0.1 from a port of its own, and hears what comes back from there. One thread.
class ClientSocket {
public:
    explicit ClientSocket(std::uint16_t receiverPort);
    ~ClientSocket();
    ClientSocket(const ClientSocket&) = delete;
    ClientSocket& operator=(const ClientSocket&) = delete;

    void send(ByteView datagram);

    // The next datagram; absent when none comes in time.
    std::optional<Bytes> receive(std::chrono::milliseconds limit = interop::patience);

    // The next one that is wanted; those before it are passed over.
    std::optional<Bytes> receive(const std::function<bool(const Bytes&)>& wanted,
                                 std::chrono::milliseconds limit = interop::patience);

    // Whether exactly this datagram comes, whatever comes before it.
    bool hears(const Bytes& datagram, std::chrono::milliseconds limit = interop::patience);

    // Forgets what has come so far. A socket that nobody reads is full after a few seconds, and takes nothing more.
    void forget();

private:
    const int fd;
};

} // namespace lumbrine::end_to_end
