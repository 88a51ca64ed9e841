// TCP connections in virtual time. The near end uses StreamSockets; the far end is an object of the test or of the
// simulator that serves the connection.
//
//     class Echo : public StreamPeer {
//     public:
//         explicit Echo(VirtualLine line) : line(std::move(line)) {}
//         void received(ByteView bytes) override { line.send(bytes, 5ms); }
//         VirtualLine line;
//     };
//     streams.listen(31416, [](VirtualLine line) { return std::make_unique<Echo>(std::move(line)); });
//
// Only threads of the runtime may use it, which take turns, so it needs no lock.
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

// The far end's handle of one connection. Copies refer to the same connection, and none keeps it alive. When the
// connection is gone, every call does nothing.
class VirtualLine {
public:
    explicit VirtualLine(std::weak_ptr<VirtualConnection> connection) : connection(std::move(connection)) {}

    // Sends bytes to the near end. They arrive `delay` from now, but never before bytes that were sent earlier. The
    // near end receives each piece separately, never two in one call.
    void send(ByteView bytes, Duration delay = Duration::zero());

    // Sends the bytes one by one, the first one `interval` from now.
    void drip(ByteView bytes, Duration interval);

    // Ends the connection in order: the near end receives everything sent before, then 0.
    void finish(Duration delay = Duration::zero());

    // Breaks the connection: every call of the near end fails with ECONNRESET, and bytes not received yet are lost.
    void reset();

    // Stops reading: the near end can send another `stalledCapacity` bytes, then its sends wait.
    void stopReading();
    void readAgain();

    // True until the near end closes the connection or this end finishes or resets it.
    bool isOpen() const;

private:
    std::weak_ptr<VirtualConnection> connection;
};

// Serves one connection from its acceptance until the near end closes it.
class StreamPeer {
public:
    virtual ~StreamPeer() = default;

    // Called with each piece that the near end sends, on the sending thread and before its call returns. Must not wait.
    virtual void received(ByteView bytes) = 0;
};

class VirtualStreams final : public StreamSockets {
public:
    static constexpr std::size_t stalledCapacity = 65'536;

    explicit VirtualStreams(VirtualRuntime& runtime);
    ~VirtualStreams() override;

    // Accepts connections to 127.0.0.1 and this port, `latency` after connect was called, and serves them. Other ports
    // refuse connections; other hosts are unreachable.
    using Service = std::function<std::unique_ptr<StreamPeer>(VirtualLine line)>;
    void listen(std::uint16_t port, Service service, Duration latency = Duration::zero());

    // Connections to this port are never accepted: connect waits for its whole limit.
    void listenWithoutAccepting(std::uint16_t port);

    // Existing connections stay.
    void stopListening(std::uint16_t port);

    // Lets the next `after` calls of this kind succeed and makes the following `times` return -error, an errno value.
    // Error 0 lets all calls succeed again.
    enum class Call { open, connect, setReceiveTimeout, setSendTimeout, setNoDelay, setNoSignal, send, receive };
    static constexpr std::size_t callCount = 8;
    static constexpr int always = -1;
    void fail(Call call, int error, int times = always, int after = 0);

    // The number of open descriptors.
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
    int lastDescriptor = -1; // the first is 0, which is a descriptor like any other
    bool ended = false;
};

} // namespace lumbrine
