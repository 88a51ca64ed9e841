// The time from a fader move of Pro Tools to the datagram that the client gets, through the whole receiver and real
// sockets. A datagram stands for the MIDI system: the thread that it wakes gives the move to the port. The peer is a
// loop that receives a datagram and sends one. The two take turns. Prints one JSON object, in nanoseconds.
#include "benchmarks/median.h"
#include "benchmarks/real_receiver.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <functional>
#include <thread>
#include <vector>

namespace lumbrine {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int warmUp = 2000;
constexpr int rounds = 20000;
constexpr int signOfLifeEvery = 1000;
constexpr auto settling = std::chrono::microseconds(150);
constexpr std::uint16_t receiverPort = 52821;
constexpr std::uint16_t midiPort = 52822;
constexpr std::uint16_t barePort = 52823;
constexpr std::uint8_t fader = 0x12;
constexpr std::uint8_t strip = 0x03;

// A thread that handles each datagram that comes to its port.
class Listener {
public:
    using Handle = std::function<void(PosixDatagramSockets&, int fd, ByteView bytes, const PeerAddress& from)>;

    Listener(std::uint16_t port, const Handle& handle) : fd(sockets.open()) {
        sockets.setDualStack(fd);
        sockets.bind(fd, port);
        thread = std::thread([this, handle] {
            std::array<std::uint8_t, 2048> buffer;
            PeerAddress from;
            for (int size = 0; (size = sockets.receive(fd, buffer, from)) >= 0;)
                handle(sockets, fd, ByteView(buffer).first(static_cast<std::size_t>(size)), from);
        });
    }
    ~Listener() {
        sockets.shutDown(fd);
        thread.join();
        sockets.close(fd);
    }

private:
    PosixDatagramSockets sockets;
    const int fd;
    std::thread thread;
};

class Client {
public:
    Client() : fd(sockets.open()) {
        sockets.setDualStack(fd);
        sockets.bind(fd, 0);
        sockets.resolve("127.0.0.1", receiverPort, receiver);
        sockets.resolve("127.0.0.1", midiPort, midi);
        sockets.resolve("127.0.0.1", barePort, bare);
    }
    ~Client() { sockets.close(fd); }

    void giveSignOfLife() { sockets.send(fd, Bytes{0x01, 0x07, 0x00, 0x00}, receiver); }

    // Nanoseconds from just before Pro Tools' move is sent until its datagram is here. Other datagrams are skipped.
    double measure(const PeerAddress& to, int round) {
        const auto over = Clock::now() + settling;
        while (Clock::now() < over)
            std::this_thread::yield();
        const auto high = static_cast<std::uint8_t>(round >> 7 & 0x7F);
        const auto low = static_cast<std::uint8_t>(round & 0x7F);
        const Bytes move{0xB0, strip, high, 0xB0, 0x20 + strip, low};
        const int raw = high << 7 | low;
        const std::array<std::uint8_t, 5> wanted{0x01, fader, strip, static_cast<std::uint8_t>(raw >> 8),
                                                 static_cast<std::uint8_t>(raw)};
        const auto sent = Clock::now();
        sockets.send(fd, move, to);
        std::array<std::uint8_t, 2048> buffer;
        PeerAddress from;
        int size = 0;
        while (size != static_cast<int>(wanted.size()) || !std::equal(wanted.begin(), wanted.end(), buffer.begin()))
            size = sockets.receive(fd, buffer, from);
        return std::chrono::duration<double, std::nano>(Clock::now() - sent).count();
    }

    PeerAddress midi;
    PeerAddress bare;

private:
    PosixDatagramSockets sockets;
    const int fd;
    PeerAddress receiver;
};

void compare() {
    RealReceiver receiver(receiverPort, [] {});
    const Listener midi(midiPort, [&](auto&, int, ByteView bytes, const PeerAddress&) { receiver.feed(bytes); });
    const Listener bare(barePort, [](auto& sockets, int fd, ByteView bytes, const PeerAddress& from) {
        const int raw = bytes[2] << 7 | bytes[5];
        const std::array<std::uint8_t, 5> answer{0x01, fader, strip, static_cast<std::uint8_t>(raw >> 8),
                                                 static_cast<std::uint8_t>(raw)};
        sockets.send(fd, answer, from);
    });
    std::thread driver([&] {
        Client client;
        client.giveSignOfLife();
        std::this_thread::sleep_for(std::chrono::milliseconds(400)); // it is the owner
        std::vector<double> ours;
        std::vector<double> others;
        for (int i = 0; i < warmUp + rounds; ++i) {
            if (i % signOfLifeEvery == 0) client.giveSignOfLife();
            const double first = client.measure(client.midi, i);
            const double second = client.measure(client.bare, i);
            if (i < warmUp) continue;
            ours.push_back(first);
            others.push_back(second);
        }
        std::printf("{\"name\": \"fader of Pro Tools to datagram (p50)\", \"ours\": %.0f, \"peer\": %.0f}\n",
                    median(ours), median(others));
        receiver.stop();
    });
    receiver.run();
    driver.join();
}

} // namespace
} // namespace lumbrine

int main() {
    lumbrine::compare();
}
