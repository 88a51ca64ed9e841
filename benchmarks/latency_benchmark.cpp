// The time from sending a fader move to the last MIDI message that it causes, through the whole receiver and real
// sockets. The peer is a loop that only receives. Datagrams go to the two in turn. Prints one JSON object with the
// medians in nanoseconds.
#include "benchmarks/median.h"
#include "model/receiver_model.h"
#include "platform/portable/nlohmann_json.h"
#include "platform/portable/no_accessibility.h"
#include "platform/posix/posix_datagram_sockets.h"
#include "platform/posix/real_runtime.h"
#include "platform/posix/run_loop.h"
#include "platform/virtual/null_platform.h"

#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <thread>
#include <vector>

namespace lumbrine {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int warmUp = 2000;
constexpr int rounds = 30000;
constexpr auto settling = std::chrono::microseconds(150);
constexpr std::uint16_t ourPort = 52811;
constexpr std::uint16_t barePort = 52812;

// Shared by the receiving thread, which counts messages, and the sending thread, which waits for them.
struct Arrivals {
    std::atomic<int> count{0};
    std::atomic<Clock::rep> last{0};

    void note() {
        last.store(Clock::now().time_since_epoch().count(), std::memory_order_relaxed);
        count.fetch_add(1, std::memory_order_release);
    }
};

class OurReceiver {
public:
    explicit OurReceiver(Arrivals& arrivals) : runtime(loop), midi(arrivals) {
        model = ReceiverModel::create({runtime, midi, sockets, advertiser, system, streams, json, accessibility},
                                      Bilingual(false), [](const std::string&) {});
        model->start();
    }

    void run() {
        loop.run();
        runtime.shutDown();
        model.reset();
    }
    void stop() { loop.stop(); }

private:
    // Notes each message that is on its way to Pro Tools.
    class Ports final : public NullMIDI {
    public:
        explicit Ports(Arrivals& arrivals) : arrivals(arrivals) {}

        MIDIStatus received(MIDIEndpointRef, ByteView) override {
            arrivals.note();
            return 0;
        }

    private:
        Arrivals& arrivals;
    };

    RunLoop loop;
    RealRuntime runtime;
    Ports midi;
    PosixDatagramSockets sockets;
    NullStreams streams;
    NlohmannJSON json{Bilingual(false)};
    NoAccessibility accessibility;
    NullAdvertiser advertiser;
    const NullComputer system{{{"QV_PORT", std::to_string(ourPort)}, {"QV_NO_BONJOUR", "1"}}};
    std::shared_ptr<ReceiverModel> model;
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

class Sender {
public:
    Sender() : fd(sockets.open()) {
        sockets.resolve("127.0.0.1", ourPort, ours);
        sockets.resolve("127.0.0.1", barePort, bare);
    }
    ~Sender() { sockets.close(fd); }

    // Waits until the work of the previous datagram is over. A receiver wakes sooner on a core that is still busy, so
    // without this wait the one measured second would have an advantage.
    static void settle() {
        const auto over = Clock::now() + settling;
        while (Clock::now() < over)
            std::this_thread::yield();
    }

    // Nanoseconds from just before the datagram is sent until the last of `messages` messages has come.
    double measure(const PeerAddress& to, Arrivals& arrivals, int messages) {
        settle();
        const Bytes move{0x01, 0x01, 0x03, 0x20, 0x00};
        const int wanted = arrivals.count.load() + messages;
        const auto sent = Clock::now().time_since_epoch().count();
        sockets.send(fd, move, to);
        while (arrivals.count.load(std::memory_order_acquire) < wanted)
            std::this_thread::yield();
        return static_cast<double>(arrivals.last.load(std::memory_order_relaxed) - sent);
    }

    PeerAddress ours;
    PeerAddress bare;

private:
    PosixDatagramSockets sockets;
    int fd;
};

void compare() {
    Arrivals ourArrivals;
    Arrivals bareArrivals;
    OurReceiver receiver(ourArrivals);
    const BareLoop bareLoop(bareArrivals);
    std::thread driver([&] {
        Sender sender;
        // The receiver sends MIDI messages when it starts; let them pass before counting.
        std::this_thread::sleep_for(std::chrono::milliseconds(400));
        std::vector<double> ours;
        std::vector<double> bare;
        for (int i = 0; i < warmUp + rounds; ++i) {
            const double first = sender.measure(sender.ours, ourArrivals, 2);
            const double second = sender.measure(sender.bare, bareArrivals, 1);
            if (i < warmUp) continue;
            ours.push_back(first);
            bare.push_back(second);
        }
        std::printf("{\"name\": \"datagram sent to last MIDI byte (p50)\", \"ours\": %.0f, \"peer\": %.0f}\n",
                    median(ours), median(bare));
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
