// For tests: TCP ports and sockets of this computer, for servers that a test starts or is.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <thread>

namespace lumbrine::interop {

// A TCP port that is free now.
std::uint16_t freeStreamPort();

// True when a server listens there.
bool isListenedAt(std::uint16_t port);
bool isListenedAt(const std::filesystem::path& socket);

// Listens as long as it lives. A separate thread calls `serve` for one connection after another and then closes it. The
// destructor waits for the current connection.
class LocalServer {
public:
    explicit LocalServer(std::function<void(int connection)> serve);
    ~LocalServer();
    LocalServer(const LocalServer&) = delete;
    LocalServer& operator=(const LocalServer&) = delete;

    const std::uint16_t port;
    std::atomic<int> accepted{0};

private:
    LocalServer(int listener, std::function<void(int connection)> serveOne);
    void run();

    std::function<void(int)> serveOne;
    const int listener;
    std::thread thread;
};

} // namespace lumbrine::interop
