// The time from sending a fader move to the last MIDI message that it causes, through the whole receiver and real
// sockets. The peer is a loop that only receives; datagrams go to the two in turn. The same with every datagram and
// MIDI packet recorded, whose peer is the receiver without a recording, and what one record costs. The same with sealed
// datagrams, whose peer is the receiver of unsealed ones. And the same beside a flood of datagrams from a stranger,
// whose peer is the receiver without the flood. Prints a JSON list, in nanoseconds.
#include "benchmarks/median.h"
#include "benchmarks/real_receiver.h"
#include "platform/linux/openssl_secrets.h"
#include "seal/client_seal.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <optional>
#include <thread>
#include <vector>

namespace lumbrine {
namespace {

using blackbox::RingWriter;
using Clock = std::chrono::steady_clock;

constexpr int warmUp = 2000;
constexpr int rounds = 30000;
constexpr int recordedRounds = 10000;
constexpr int recordsATurn = 20'000;
constexpr int floodRounds = 2000;
constexpr int floodTurns = 5; // with the flood and without it
constexpr int floodASecond = 100'000;
// The receiver sends MIDI messages when it starts; let them pass before counting.
constexpr auto greeting = std::chrono::milliseconds(400);
constexpr auto settling = std::chrono::microseconds(150);
constexpr std::uint16_t ourPort = 52811;
constexpr std::uint16_t barePort = 52812;
constexpr std::uint16_t recordedPort = 52815;
constexpr std::uint16_t sealedPort = 52816;

// Shared by the receiving thread, which counts messages, and the sending thread, which waits for them.
struct Arrivals {
    std::atomic<int> count{0};
    std::atomic<Clock::rep> last{0};

    void note() {
        last.store(Clock::now().time_since_epoch().count(), std::memory_order_relaxed);
        count.fetch_add(1, std::memory_order_release);
    }
};

// The peer, and the lower limit: no receiver can react before recvfrom returns.
class BareLoop {
public:
    explicit BareLoop(Arrivals& arrivals) : fd(sockets.open()) {
        sockets.setDualStack(fd);
        sockets.bind(fd, barePort);
        thread = std::thread([this, &arrivals] {
            std::array<std::uint8_t, 2048> buffer;
            PeerAddress from;
            while (sockets.receive(fd, buffer, from) >= 0)
                arrivals.note();
        });
    }
    ~BareLoop() {
        sockets.shutDown(fd);
        thread.join();
        sockets.close(fd);
    }

private:
    PosixDatagramSockets sockets;
    int fd;
    std::thread thread;
};

const Bytes move{0x01, 0x01, 0x03, 0x20, 0x00};

class Sender {
public:
    Sender() : fd(sockets.open()) {
        sockets.resolve("127.0.0.1", ourPort, ours);
        sockets.resolve("127.0.0.1", barePort, bare);
        sockets.resolve("127.0.0.1", recordedPort, recorded);
        sockets.resolve("127.0.0.1", sealedPort, sealed);
    }
    ~Sender() { sockets.close(fd); }

    // A datagram may be lost beside a flood; it counts as one that took so long.
    static constexpr auto lost = std::chrono::milliseconds(20);

    // Waits until the work of the previous datagram is over. A receiver wakes sooner on a core that is still busy, so
    // without this wait the one measured second would have an advantage.
    static void settle() {
        const auto over = Clock::now() + settling;
        while (Clock::now() < over)
            std::this_thread::yield();
    }

    // Nanoseconds from just before the datagram is sent until the last of `messages` messages has come.
    double measure(const PeerAddress& to, Arrivals& arrivals, int messages) {
        return measure(to, arrivals, messages, move);
    }
    double measure(const PeerAddress& to, Arrivals& arrivals, int messages, ByteView datagram) {
        settle();
        const int wanted = arrivals.count.load() + messages;
        const auto sent = Clock::now().time_since_epoch().count();
        sockets.send(fd, datagram, to);
        const auto tooLate = Clock::now() + lost;
        while (arrivals.count.load(std::memory_order_acquire) < wanted) {
            if (Clock::now() >= tooLate) return std::chrono::nanoseconds(lost).count();
            std::this_thread::yield();
        }
        return static_cast<double>(arrivals.last.load(std::memory_order_relaxed) - sent);
    }

    PeerAddress ours;
    PeerAddress bare;
    PeerAddress recorded;
    PeerAddress sealed;

    // Opens a session with the receiver of sealed datagrams.
    void open(seal::ClientSeal& client) {
        std::array<std::uint8_t, 2048> buffer{};
        PeerAddress from;
        sockets.send(fd, client.outgoing(Bytes{0x01, 0x00, 0, 0, 0, 0, 0, 0, 0, 7}, TimePoint()), sealed);
        while (!client.inSession()) {
            const int size = sockets.receive(fd, buffer, from);
            const ByteView datagram = ByteView(buffer).first(static_cast<std::size_t>(std::max(size, 0)));
            sockets.send(fd, client.incoming(datagram, TimePoint()).reply, sealed);
        }
    }

private:
    PosixDatagramSockets sockets;
    int fd;
};

// Somebody who is not in control and sends as fast as that.
class Stranger {
public:
    Stranger() : fd(sockets.open()) {
        sockets.resolve("127.0.0.1", ourPort, receiver);
        thread = std::thread([this] { run(); });
    }
    ~Stranger() {
        ended = true;
        thread.join();
        sockets.close(fd);
    }

    long sent = 0;

private:
    // A few datagrams at a time: a sleep is not exact.
    void run() {
        const Bytes press{0x01, 0x04, 0x03};
        const auto begin = Clock::now();
        while (!ended) {
            const double passed = std::chrono::duration<double>(Clock::now() - begin).count();
            for (; static_cast<double>(sent) < passed * floodASecond; ++sent)
                sockets.send(fd, press, receiver);
            std::this_thread::sleep_for(std::chrono::microseconds(50));
        }
    }

    PosixDatagramSockets sockets;
    const int fd;
    PeerAddress receiver;
    std::atomic<bool> ended{false};
    std::thread thread;
};

void compareWithBareLoop(Sender& sender, Arrivals& ourArrivals) {
    Arrivals bareArrivals;
    const BareLoop bareLoop(bareArrivals);
    std::vector<double> ours;
    std::vector<double> bare;
    for (int i = 0; i < warmUp + rounds; ++i) {
        const double first = sender.measure(sender.ours, ourArrivals, 2);
        const double second = sender.measure(sender.bare, bareArrivals, 1);
        if (i < warmUp) continue;
        ours.push_back(first);
        bare.push_back(second);
    }
    std::printf("[{\"name\": \"datagram sent to last MIDI byte (p50)\", \"ours\": %.0f, \"peer\": %.0f},\n",
                median(ours), median(bare));
}

// Memory as large as the recording's file; a mapped file is stored to in the same way.
struct Ring {
    std::vector<std::uint64_t> words = std::vector<std::uint64_t>((std::size_t{16} << 20) / sizeof(std::uint64_t), 1);
    RingWriter writer{words, 1, 0};
};

// Beside the first receiver, on a main thread of its own.
class SecondReceiver {
public:
    SecondReceiver(std::uint16_t port, const RealReceiver::Extras& extras)
        : main([this, port, extras] {
              receiver.emplace(port, [this] { arrivals.note(); }, extras);
              isThere = true;
              receiver->run();
          }) {
        while (!isThere)
            std::this_thread::yield();
        std::this_thread::sleep_for(greeting);
    }
    ~SecondReceiver() {
        receiver->stop();
        main.join();
    }
    SecondReceiver(const SecondReceiver&) = delete;
    SecondReceiver& operator=(const SecondReceiver&) = delete;

    Arrivals arrivals;

private:
    std::optional<RealReceiver> receiver;
    std::atomic<bool> isThere{false};
    std::thread main;
};

void compareWithRecording(Sender& sender, Arrivals& arrivals) {
    Ring ring;
    SecondReceiver recorded(recordedPort, {.ring = &ring.writer});
    std::vector<double> with;
    std::vector<double> without;
    for (int i = 0; i < warmUp + recordedRounds; ++i) {
        const double first = sender.measure(sender.recorded, recorded.arrivals, 2);
        const double second = sender.measure(sender.ours, arrivals, 2);
        if (i < warmUp) continue;
        with.push_back(first);
        without.push_back(second);
    }
    std::printf(" {\"name\": \"the same with everything recorded (p50)\", \"ours\": %.0f, \"peer\": %.0f},\n",
                median(with), median(without));
}

// The sealing client is another one, whose socket is not yet full of what receivers answer.
void compareWithSeals(Sender& sender, Arrivals& arrivals) {
    Sender sealingSender;
    OpenSSLSecrets secrets;
    const PairingKey key = *PairingKey::parse("742BCM0SCXPZA154Z02S9P89HC");
    SecondReceiver sealing(sealedPort, {.secrets = &secrets, .key = key});
    seal::ClientSeal client(secrets, key);
    sealingSender.open(client);
    std::vector<double> sealed;
    std::vector<double> unsealed;
    for (int i = 0; i < warmUp + recordedRounds; ++i) {
        const double first =
            sealingSender.measure(sender.sealed, sealing.arrivals, 2, client.outgoing(move, TimePoint()));
        const double second = sender.measure(sender.ours, arrivals, 2);
        if (i < warmUp) continue;
        sealed.push_back(first);
        unsealed.push_back(second);
    }
    std::printf(" {\"name\": \"the same sealed (p50)\", \"ours\": %.0f, \"peer\": %.0f},\n", median(sealed),
                median(unsealed));
}

void measureARecord() {
    Ring ring;
    RunLoop loop;
    const RealRuntime runtime(loop);
    const Recorder recorder(runtime, ring.writer);
    const blackbox::DatagramHead head;
    std::vector<double> costs;
    for (int turn = 0; turn < 50; ++turn) {
        const auto begin = Clock::now();
        for (int i = 0; i < recordsATurn; ++i)
            recorder.note(blackbox::Kind::datagramIn, 0, {blackbox::bytesOf(head), move});
        costs.push_back(std::chrono::duration<double, std::nano>(Clock::now() - begin).count() / recordsATurn);
    }
    std::printf(" {\"name\": \"one record of a datagram\", \"ours\": %.1f, \"limit\": 100},\n", median(costs));
}

void compareWithFlood(Sender& sender, Arrivals& arrivals) {
    std::vector<double> quiet;
    std::vector<double> flooded;
    for (int turn = 0; turn < floodTurns; ++turn) {
        for (int i = 0; i < floodRounds; ++i)
            quiet.push_back(sender.measure(sender.ours, arrivals, 2));
        const Stranger stranger;
        for (int i = 0; i < floodRounds; ++i)
            flooded.push_back(sender.measure(sender.ours, arrivals, 2));
    }
    std::printf(" {\"name\": \"the same beside 100,000 hostile a second (p99)\", \"ours\": %.0f, \"peer\": %.0f}]\n",
                percentile(flooded, 99), percentile(quiet, 99));
}

void compare() {
    Arrivals arrivals;
    RealReceiver receiver(ourPort, [&arrivals] { arrivals.note(); });
    std::thread driver([&] {
        Sender sender;
        std::this_thread::sleep_for(greeting);
        compareWithBareLoop(sender, arrivals);
        compareWithRecording(sender, arrivals);
        measureARecord();
        compareWithSeals(sender, arrivals);
        compareWithFlood(sender, arrivals);
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
