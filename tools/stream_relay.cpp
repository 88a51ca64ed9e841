#include "tools/stream_relay.h"

#include "platform/posix/stream_descriptor.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <list>
#include <utility>
#include <vector>

namespace lumbrine {

namespace {

using End = RelayedConnection::End;

constexpr std::size_t readSize = 16'384;
// A side is not read while this many bytes wait for the other one, so that a stalled peer cannot fill the memory.
constexpr std::size_t mostWaiting = 1'048'576;

// One end of a connection, and the bytes still to be sent to it.
class Side {
public:
    Side(StreamDescriptor socket, std::size_t bytesAtOnce) : descriptor(std::move(socket)), piece(bytesAtOnce) {}

    const StreamDescriptor& socket() const { return descriptor; }
    std::size_t waiting() const { return queue.size() - sent; }
    void add(const Bytes& bytes) { queue.insert(queue.end(), bytes.begin(), bytes.end()); }

    // Sends as much as the socket takes now. False if the connection is broken.
    bool flush() {
        while (waiting() > 0) {
            const ByteView rest = ByteView(queue).subspan(sent);
            const int count = descriptor.send(piece == 0 ? rest : rest.first(std::min(piece, rest.size())));
            if (count < 0) return false;
            if (count == 0) break;
            sent += static_cast<std::size_t>(count);
        }
        queue.erase(queue.begin(), queue.begin() + static_cast<std::ptrdiff_t>(std::exchange(sent, 0)));
        return true;
    }

private:
    StreamDescriptor descriptor;
    const std::size_t piece;
    Bytes queue;
    std::size_t sent = 0;
};

struct Connection {
    Side client;
    Side service;
    std::unique_ptr<RelayedConnection> passage;
    bool finishing = false; // ends once all is sent to the client; nothing more is read
    bool over = false;
};

} // namespace

class StreamRelay::Traffic {
public:
    Traffic(Runtime& runtime, RelaySetup setup)
        : runtime(runtime), setup(std::move(setup)), listener(StreamDescriptor::listening(this->setup.port)) {
        if (!listener.isOpen() || ::pipe(wakePipe.data()) != 0) return;
        boundPort = listener.localPort();
        thread = runtime.startThread("stream relay", [this] { run(); });
    }

    ~Traffic() {
        if (!thread) return;
        ::close(wakePipe[1]);
        thread.reset();
        ::close(wakePipe[0]);
    }

    std::optional<std::uint16_t> port() const { return boundPort; }

private:
    void run() {
        for (;;) {
            std::vector<pollfd> waited = whatToWaitFor();
            ::poll(waited.data(), static_cast<nfds_t>(waited.size()), untilBack());
            if (waited[0].revents != 0) break;
            serve(waited);
            comeBack();
            connections.remove_if([](const Connection& connection) { return connection.over; });
        }
        for (Connection& connection : connections)
            connection.client.socket().breakOnClose();
        connections.clear();
    }

    // For poll: the wake pipe, the listener, then client and service of each connection, in the list's order.
    std::vector<pollfd> whatToWaitFor() const {
        std::vector<pollfd> waited{{wakePipe[0], POLLIN, 0}, {listener.number(), POLLIN, 0}};
        for (const Connection& connection : connections) {
            waited.push_back(waitingFor(connection, connection.client, connection.service));
            waited.push_back(waitingFor(connection, connection.service, connection.client));
        }
        return waited;
    }

    static pollfd waitingFor(const Connection& connection, const Side& side, const Side& other) {
        const bool reads = !connection.finishing && other.waiting() < mostWaiting;
        const int events = (reads ? POLLIN : 0) | (side.waiting() > 0 ? POLLOUT : 0);
        // If there is nothing to wait for, the descriptor is -1, which poll ignores. Otherwise poll would report the
        // hang-up of a closed peer (POLLHUP needs no request) again and again, and the loop would spin.
        return {events == 0 ? -1 : side.socket().number(), static_cast<short>(events), 0};
    }

    int untilBack() const {
        if (listener.isOpen()) return -1;
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(backAt - runtime.now()).count();
        return static_cast<int>(std::max<std::chrono::milliseconds::rep>(left, 0));
    }

    void serve(const std::vector<pollfd>& waited) {
        std::size_t at = 2;
        for (Connection& connection : connections) {
            const short client = waited[at++].revents, service = waited[at++].revents;
            if (client != 0) relay(connection, connection.client, &RelayedConnection::fromClient);
            if (service != 0) relay(connection, connection.service, &RelayedConnection::fromService);
            flush(connection);
        }
        if (listener.isOpen() && waited[1].revents != 0) accept();
    }

    void relay(Connection& connection, Side& from, RelayedConnection::Passed (RelayedConnection::*pass)(ByteView)) {
        if (connection.finishing || connection.over) return;
        std::array<std::uint8_t, readSize> buffer;
        const int count = from.socket().receive(buffer);
        if (count == StreamDescriptor::nothingYet) return;
        if (count <= 0) {
            connection.finishing = true;
            return;
        }
        const auto passed = (connection.passage.get()->*pass)(ByteView(buffer).first(static_cast<std::size_t>(count)));
        connection.client.add(passed.toClient);
        connection.service.add(passed.toService);
        if (passed.end == End::finish) connection.finishing = true;
        if (passed.end == End::die) die();
    }

    static void flush(Connection& connection) {
        if (connection.over) return;
        if (!connection.service.flush() || !connection.client.flush()) connection.over = true;
        if (connection.finishing && connection.client.waiting() == 0) connection.over = true;
    }

    void accept() {
        StreamDescriptor client = listener.accept();
        if (!client.isOpen()) return;
        StreamDescriptor service = StreamDescriptor::connected(setup.service);
        if (!service.isOpen()) return;
        connections.push_back(
            {Side(std::move(client), setup.bytesAtOnce), Side(std::move(service), 0), setup.connected()});
    }

    void die() {
        for (Connection& connection : connections) {
            connection.client.socket().breakOnClose();
            connection.over = true;
        }
        listener = StreamDescriptor();
        backAt = runtime.now() + setup.downTime;
        setup.died();
    }

    // Listens again once the down time is over. If another program has taken the port, retries every 50 ms.
    void comeBack() {
        constexpr std::chrono::milliseconds pause{50};
        if (listener.isOpen() || runtime.now() < backAt) return;
        listener = StreamDescriptor::listening(*boundPort);
        backAt = runtime.now() + pause;
    }

    Runtime& runtime;
    const RelaySetup setup;
    std::optional<std::uint16_t> boundPort;
    std::array<int, 2> wakePipe{-1, -1}; // the thread ends when the write end is closed
    StreamDescriptor listener;           // closed while the relay is down
    TimePoint backAt;
    std::list<Connection> connections;
    std::unique_ptr<Thread> thread;
};

StreamRelay::StreamRelay(Runtime& runtime, RelaySetup setup)
    : traffic(std::make_unique<Traffic>(runtime, std::move(setup))) {}

StreamRelay::~StreamRelay() = default;

std::optional<std::uint16_t> StreamRelay::port() const {
    return traffic->port();
}

} // namespace lumbrine
