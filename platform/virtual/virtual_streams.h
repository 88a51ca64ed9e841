// TCP connections in virtual time: the near end is a StreamSockets, the far end an object of the test's or the
// simulator's that serves it.
//
//     class Echo : public StreamPeer {
//     public:
//         explicit Echo(VirtualLine l) : line(std::move(l)) {}
//         void received(ByteView bytes) override { line.send(bytes, 5ms); }
//         VirtualLine line;
//     };
//     streams.listen(31416, [](VirtualLine line) { return std::make_unique<Echo>(std::move(line)); });
//
// Used by threads of the runtime only, which take turns.
#pragma once

#include "platform/api/stream_socket.h"
#include "platform/virtual/virtual_runtime.h"

#include <array>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>

namespace lumbrine {

struct VirtualConnection;

// One connection as its far end holds it. A copy holds the same connection; none keeps it. Everything that is done to a
// connection that is gone does nothing.
class VirtualLine {
public:
    explicit VirtualLine(std::weak_ptr<VirtualConnection> held) : connection(std::move(held)) {}

    // Bytes to the near end, `delay` from now but not before what was sent earlier. Each piece is received by itself:
    // the near end never gets two of them in one call.
    void send(ByteView bytes, Duration delay = Duration::zero());

    // One byte after another, the first one `interval` from now.
    void drip(ByteView bytes, Duration interval);

    // The orderly end: the near end receives what was sent before, then 0.
    void finish(Duration delay = Duration::zero());

    // The end without order: every call of the near end fails with ECONNRESET, whatever was sent before.
    void reset();

    // From now on nothing is read: the near end may send another `stalledCapacity` bytes, then its sends wait.
    void stopReading();
    void readAgain();

    // Neither closed by the near end nor ended by this one.
    bool isOpen() const;

private:
    std::weak_ptr<VirtualConnection> connection;
};

// Serves one connection, from its acceptance until the near end closes it.
class StreamPeer {
public:
    virtual ~StreamPeer() = default;

    // What the near end has sent, in the pieces in which it was sent, on the thread that sent it and before its call
    // returns. It must not wait.
    virtual void received(ByteView bytes) = 0;
};

class VirtualStreams final : public StreamSockets {
public:
    static constexpr std::size_t stalledCapacity = 65'536;

    explicit VirtualStreams(VirtualRuntime& rt);
    ~VirtualStreams() override;

    // Connections to 127.0.0.1 and that port are accepted and served, `latency` after they were asked for. Connections
    // to any other port are refused, to any other host unreachable.
    using Service = std::function<std::unique_ptr<StreamPeer>(VirtualLine line)>;
    void listen(std::uint16_t port, Service service, Duration latency = Duration::zero());

    // Connecting to that port waits and is never answered.
    void listenWithoutAccepting(std::uint16_t port);

    // Connections that there are stay.
    void stopListening(std::uint16_t port);

    // Lets `after` calls of that kind pass and makes the next `times` return -error (an errno value); 0 heals it at
    // once.
    enum class Call { open, connect, setReceiveTimeout, setSendTimeout, setNoDelay, setNoSignal, send, receive };
    static constexpr std::size_t callCount = 8;
    static constexpr int always = -1;
    void fail(Call call, int error, int times = always, int after = 0);

    // Descriptors that were opened and are not closed.
    std::size_t openCount() const { return sockets.size(); }

    int open() override;
    int connect(int fd, const std::string& host, std::uint16_t port, Duration limit) override;
    int setReceiveTimeout(int fd, Duration limit) override;
    int setSendTimeout(int fd, Duration limit) override;
    int setNoDelay(int fd) override;
    int setNoSignal(int fd) override;
    int send(int fd, ByteView bytes) override;
    int receive(int fd, std::span<std::uint8_t> buffer) override;
    void close(int fd) override;
    void shutDown() override;

private:
    struct Listener {
        Service service; // empty when connections are not answered
        Duration latency;
    };
    struct Failure {
        int error = 0;
        int times = 0;
        int after = 0;
    };

    std::shared_ptr<VirtualConnection> find(int fd) const;
    int injected(Call call);
    int setOption(int fd, Call call);
    bool waitFor(VirtualConnection& connection, std::string_view what, std::optional<TimePoint> deadline);

    VirtualRuntime& runtime;
    std::map<std::uint16_t, Listener> listeners;
    std::map<int, std::shared_ptr<VirtualConnection>> sockets;
    std::array<Failure, callCount> failures{};
    int lastDescriptor = 1999;
    bool ended = false;
};

} // namespace lumbrine
