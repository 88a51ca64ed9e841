// TCP ports and sockets of this machine, for servers that a test starts or is.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <thread>

namespace lumbrine::interop {

// A port that nobody listens at now.
std::uint16_t freeStreamPort();

// True when somebody listens there.
bool isListenedAt(std::uint16_t port);
bool isListenedAt(const std::filesystem::path& socket);

// Listens from its making on and hands each connection, one after another, to `serve` on a thread of its own, then
// closes it. Destroying it waits for the connection that is being served.
class LocalServer {
public:
    explicit LocalServer(std::function<void(int connection)> serve);
    ~LocalServer();
    LocalServer(const LocalServer&) = delete;
    LocalServer& operator=(const LocalServer&) = delete;

    const std::uint16_t port;
    std::atomic<int> accepted{0};

private:
    LocalServer(int listening, std::function<void(int connection)> serve);
    void run();

    std::function<void(int)> serveOne;
    const int listener;
    std::thread thread;
};

} // namespace lumbrine::interop
