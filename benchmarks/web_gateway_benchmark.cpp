// The time from a browser's WebSocket message to the datagram on the receiver's socket, through lumbrine-web's gateway.
// The peer is a bare WebSocket echo; messages go to the two in turn. And the processor time of the gateway while one
// browser, or sixteen, get meters. Prints a JSON list, times in nanoseconds.
#include "benchmarks/median.h"
#include "web/gateway/gateway.h"

#include <boost/asio.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/websocket.hpp>
#include <pthread.h>
#include <time.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <future>
#include <list>
#include <thread>
#include <vector>

namespace lumbrine::web {
namespace {

namespace asio = boost::asio;
namespace websocket = boost::beast::websocket;
using asio::ip::tcp;
using asio::ip::udp;
using Clock = std::chrono::steady_clock;
using Nanoseconds = std::chrono::duration<double, std::nano>;

constexpr int warmUp = 1'000;
constexpr int rounds = 8'000;
constexpr auto settling = std::chrono::microseconds(300); // also keeps to the 2,000 messages a second that are allowed
constexpr auto meterTime = std::chrono::seconds(3);
constexpr int metersASecond = 60;
constexpr int mostBrowsers = 16;

const std::string keyText = "742BCM0SCXPZA154Z02S9P89HC";

// The peer, and the lower limit: no gateway can do less than read a message and write one.
class BareEcho {
public:
    BareEcho() : door(loop, {asio::ip::address_v4::loopback(), 0}) {
        asio::co_spawn(loop, serveOne(), asio::detached);
        thread = std::thread([this] { loop.run(); });
    }
    ~BareEcho() {
        loop.stop();
        thread.join();
    }

    std::uint16_t port() const { return door.local_endpoint().port(); }

private:
    asio::awaitable<void> serveOne() {
        websocket::stream<tcp::socket> socket(co_await door.async_accept(asio::use_awaitable));
        socket.next_layer().set_option(tcp::no_delay(true));
        co_await socket.async_accept(asio::use_awaitable);
        socket.binary(true);
        boost::beast::flat_buffer message;
        for (;;) {
            co_await socket.async_read(message, asio::use_awaitable);
            co_await socket.async_write(message.cdata(), asio::use_awaitable);
            message.clear();
        }
    }

    asio::io_context loop{1};
    tcp::acceptor door;
    std::thread thread;
};

// The gateway as lumbrine-web has it, in a thread. There is one at most: it ends by a signal to the process.
class RunningGateway {
public:
    explicit RunningGateway(std::uint16_t receiverPort) {
        std::promise<std::uint16_t> started;
        thread = std::thread([receiverPort, &started] {
            const GatewaySettings settings{.port = 0,
                                           .receiverHost = "127.0.0.1",
                                           .receiverPort = receiverPort,
                                           .hostName = "benchmark",
                                           .certificateChain = "",
                                           .privateKey = "",
                                           .key = [] { return PairingKey::parse(keyText); },
                                           .sealKey = [] { return std::nullopt; }};
            (void)serve(settings, [&](std::uint16_t tcpPort) { started.set_value(tcpPort); });
        });
        ownPort = started.get_future().get();
    }
    ~RunningGateway() {
        std::raise(SIGTERM);
        thread.join();
    }

    std::uint16_t port() const { return ownPort; }

    // Of its thread, so far.
    Nanoseconds processorTime() {
        clockid_t clock{};
        ::pthread_getcpuclockid(thread.native_handle(), &clock);
        timespec time{};
        ::clock_gettime(clock, &time);
        return std::chrono::seconds(time.tv_sec) + Nanoseconds(time.tv_nsec);
    }

private:
    std::uint16_t ownPort = 0;
    std::thread thread;
};

class Browser {
public:
    explicit Browser(std::uint16_t port) : socket(loop) {
        socket.next_layer().connect({asio::ip::address_v4::loopback(), port});
        socket.next_layer().set_option(tcp::no_delay(true));
        const std::string host = "127.0.0.1:" + std::to_string(port);
        socket.set_option(websocket::stream_base::decorator([host](websocket::request_type& request) {
            request.set("Origin", "http://" + host);
            request.set("Sec-WebSocket-Protocol", "lumbrine, key-" + keyText);
        }));
        socket.handshake(host, "/ws");
        socket.binary(true);
    }

    void send() { socket.write(asio::buffer(fingerMove)); }

    void receive() {
        boost::beast::flat_buffer message;
        socket.read(message);
    }

private:
    static constexpr std::array<std::uint8_t, 5> fingerMove{0x01, 0x01, 0x03, 0x20, 0x00};

    asio::io_context loop;
    websocket::stream<tcp::socket> socket;
};

class Receiver {
public:
    Receiver() : socket(loop, {asio::ip::address_v4::loopback(), 0}) {}

    std::uint16_t port() const { return socket.local_endpoint().port(); }

    void receive() {
        std::array<std::uint8_t, 2048> datagram;
        socket.receive_from(asio::buffer(datagram), lastPeer);
    }

    udp::endpoint peer() const { return lastPeer; }

    void sendMeters(const udp::endpoint& to) {
        std::array<std::uint8_t, 34> meters{0x01, 0x11};
        socket.send_to(asio::buffer(meters), to);
    }

private:
    asio::io_context loop;
    udp::socket socket;
    udp::endpoint lastPeer;
};

template <typename Arrival>
double measure(Browser& browser, const Arrival& arrival) {
    // The side measured second would otherwise find a core that is still busy and wakes sooner.
    for (const auto over = Clock::now() + settling; Clock::now() < over;)
        std::this_thread::yield();
    const auto sent = Clock::now();
    browser.send();
    arrival();
    return Nanoseconds(Clock::now() - sent).count();
}

void compareWithEcho(RunningGateway& gateway, Receiver& receiver) {
    const BareEcho echo;
    Browser ours(gateway.port()), bare(echo.port());
    std::vector<double> gatewayTimes, echoTimes;
    for (int i = 0; i < warmUp + rounds; ++i) {
        const double first = measure(ours, [&] { receiver.receive(); });
        const double second = measure(bare, [&] { bare.receive(); });
        if (i < warmUp) continue;
        gatewayTimes.push_back(first);
        echoTimes.push_back(second);
    }
    for (const auto& [name, hundredths] : {std::pair("p50", 50), std::pair("p99", 99)})
        std::printf(" {\"name\": \"browser's message to datagram (%s)\", \"ours\": %.0f, \"peer\": %.0f},\n", name,
                    percentile(gatewayTimes, static_cast<std::size_t>(hundredths)),
                    percentile(echoTimes, static_cast<std::size_t>(hundredths)));
}

// At most 1 % of a core for each browser.
double measureMeters(RunningGateway& gateway, Receiver& receiver, int browserCount) {
    std::list<Browser> browsers;
    std::vector<udp::endpoint> peers;
    for (int i = 0; i < browserCount; ++i) {
        browsers.emplace_back(gateway.port()).send();
        receiver.receive();
        peers.push_back(receiver.peer());
    }
    const Nanoseconds before = gateway.processorTime();
    const auto begin = Clock::now();
    const int frames = metersASecond * static_cast<int>(meterTime.count());
    for (int frame = 0; frame < frames; ++frame) {
        std::this_thread::sleep_until(begin + frame * std::chrono::seconds(1) / metersASecond);
        for (const udp::endpoint& peer : peers)
            receiver.sendMeters(peer);
        for (Browser& browser : browsers)
            browser.receive();
    }
    return (gateway.processorTime() - before).count() / static_cast<double>(meterTime.count());
}

void compare() {
    Receiver receiver;
    RunningGateway gateway(receiver.port());
    std::printf("[\n");
    compareWithEcho(gateway, receiver);
    std::printf(" {\"name\": \"gateway's processor time a second, meters\", \"ours\": %.0f, \"limit\": %.0f},\n",
                measureMeters(gateway, receiver, 1), 0.01e9);
    std::printf(" {\"name\": \"the same for %d pages at once\", \"ours\": %.0f, \"limit\": %.0f}]\n", mostBrowsers,
                measureMeters(gateway, receiver, mostBrowsers), mostBrowsers * 0.01e9);
}

} // namespace
} // namespace lumbrine::web

int main() {
    lumbrine::web::compare();
}
