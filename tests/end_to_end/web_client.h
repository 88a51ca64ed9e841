// For tests: a browser as a bare TCP connection that says and leaves out what the test wants.
#pragma once

#include "base/bytes.h"
#include "tests/interop/waiting.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace lumbrine::end_to_end {

// A TCP port of this computer that is free now.
std::uint16_t freeTCPPort();

class TCPConnection {
public:
    // To a port of this computer; `address` is numeric, IPv4 or IPv6.
    explicit TCPConnection(std::uint16_t port, const std::string& address = "127.0.0.1");
    ~TCPConnection();
    TCPConnection(const TCPConnection&) = delete;
    TCPConnection& operator=(const TCPConnection&) = delete;

    // Writes everything, or nothing more when the other end has closed.
    void write(ByteView bytes);
    void write(const std::string& text);

    // Reads until that many bytes, or the text, are there. Absent when they do not come in time or the other end has
    // closed.
    std::optional<Bytes> read(std::size_t count, std::chrono::milliseconds limit = interop::patience);
    std::optional<std::string> readTo(const std::string& text);

    // True when the other end closes in time; what comes before is dropped.
    bool closes(std::chrono::milliseconds limit = interop::patience);

    // The answer to an HTTP request, with its body.
    std::string exchange(const std::string& request);

private:
    bool receiveMore(std::chrono::steady_clock::time_point deadline);

    const int fd;
    Bytes received; // and not read yet
};

// How a WebSocket is asked for.
struct SocketRequest {
    std::string key;
    std::string host = "";   // empty: the address and the port
    std::string origin = ""; // empty: our page's
    std::string target = "/ws";
};

class WebClient {
public:
    WebClient(std::uint16_t port, const SocketRequest& request);

    // The status of the answer: 101 for a WebSocket.
    int status() const { return statusCode; }

    static constexpr int text = 1, binary = 2, closing = 8, ping = 9, pong = 10;
    void send(ByteView payload, int opcode = binary);

    struct Frame {
        int opcode;
        Bytes payload;
    };
    std::optional<Frame> receive(std::chrono::milliseconds limit = interop::patience);

    // The next message for which `wanted` is true; earlier ones are dropped.
    std::optional<Bytes> receive(const std::function<bool(const Bytes&)>& wanted,
                                 std::chrono::milliseconds limit = interop::patience);
    bool hears(const Bytes& message, std::chrono::milliseconds limit = interop::patience);

    // Waits for the close frame and answers it; the messages before it are dropped. Absent when the connection ends
    // without one.
    std::optional<int> closeCode(std::chrono::milliseconds limit = interop::patience);

    TCPConnection connection;

private:
    int statusCode = 0;
};

} // namespace lumbrine::end_to_end
