// A receiver with an owner at work, while others send it nonsense as fast as they can.
//
// LUMBRINE_FLOOD_SECONDS makes each flood longer than the few seconds that it lasts by itself.
#include "tests/end_to_end/client_socket.h"
#include "tests/end_to_end/deadlines.h"
#include "tests/end_to_end/flooder.h"
#include "tests/end_to_end/host_ports.h"
#include "tests/end_to_end/receiver_process.h"
#include "tests/end_to_end/resident_memory.h"
#include "tests/interop/private_jack.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <numeric>
#include <random>
#include <thread>

namespace lumbrine::end_to_end {
namespace {

using interop::waitUntil;
using std::chrono::milliseconds;
using std::chrono::seconds;
using Clock = std::chrono::steady_clock;

constexpr milliseconds betweenMoves{20};
constexpr std::uint8_t strip = 2;

seconds floodTime(int usual) {
    const char* wanted = std::getenv("LUMBRINE_FLOOD_SECONDS");
    return seconds(wanted != nullptr ? std::max(std::atoi(wanted), 1) : usual);
}

// Events of up to 16 random bytes.
std::function<Bytes()> randomMIDI() {
    return [random = std::make_shared<std::minstd_rand>(1)] {
        Bytes bytes(1 + (*random)() % 16);
        std::ranges::generate(bytes, [&] { return static_cast<std::uint8_t>((*random)() >> 8); });
        return bytes;
    };
}

// What went in, what came out, and what it cost.
struct Figures {
    std::uint64_t datagrams = 0;
    std::uint64_t bytesOfMIDI = 0;
    int movesSent = 0;
    std::size_t movesArrived = 0;
    long memoryBefore = 0; // KiB
    long memoryAfter = 0;

    void print() const {
        std::printf("%llu foreign datagrams, %llu bytes of MIDI; %d moves sent, %zu arrived; memory %ld KiB before, "
                    "%ld KiB after\n",
                    static_cast<unsigned long long>(datagrams), static_cast<unsigned long long>(bytesOfMIDI), movesSent,
                    movesArrived, memoryBefore, memoryAfter);
    }
};

class BadInput : public testing::Test {
protected:
    BadInput() {
        owner.send(Bytes{0x01, 0x07, 0x00, 0x00});
        owner.send(Bytes{0x01, 0x01, strip, 0x00, 0x00});
        EXPECT_TRUE(host.hears({{0xB0, strip, 0x00}, {0xB0, 0x20 + strip, 0x00}}));
        host.clear();
    }

    // The owner moves one fader for that long; each move has a value of its own, from 1 on. How many there were.
    int work(seconds duration) {
        const int moves = static_cast<int>(duration / betweenMoves);
        auto next = Clock::now();
        for (int value = 1; value <= moves; ++value) {
            owner.send(
                Bytes{0x01, 0x01, strip, static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value)});
            owner.forget();
            std::this_thread::sleep_until(next += betweenMoves);
        }
        return moves;
    }

    // The moves that came out of the MIDI port, in their order.
    std::vector<int> arrived() const {
        std::vector<int> values;
        int high = -1;
        for (const HostPorts::Event& event : host.events()) {
            if (event.bytes.size() != 3 || event.bytes[0] != 0xB0) continue;
            if (event.bytes[1] == strip) high = event.bytes[2];
            if (event.bytes[1] == 0x20 + strip) values.push_back(high << 7 | event.bytes[2]);
        }
        return values;
    }

    void expectItWorksAsBefore() {
        host.flood({});
        host.clear();
        // The first attempts may come while the receiver's buffer is still full.
        EXPECT_TRUE(waitUntil([this] {
            owner.forget();
            owner.send(Bytes{0x01, 0x00});
            return owner.hears({0x01, 0x7F}, milliseconds(200));
        }));
        // The noise may have put a name on the strip: a move counts once the owner has been told it.
        EXPECT_TRUE(waitUntil([this] {
            owner.send(Bytes{0x01, 0x01, strip, 0x3F, 0xFF});
            const std::vector<int> values = arrived();
            return !values.empty() && values.back() == 0x3FFF;
        }));
        // An end of SysEx ends what the noise may have begun.
        host.send(Bytes{0xF7});
        host.send(Bytes{0x90, 0x00, 0x00});
        EXPECT_TRUE(host.hears({{0x90, 0x00, 0x7F}}));
        receiver.process.signal(SIGTERM);
        EXPECT_EQ(receiver.process.wait(interop::patience), 0);
    }

    long memory() const { return residentKiB(receiver.process.id()); }

    interop::PrivateJack jack;
    ReceiverProcess receiver;
    HostPorts host{"Lumbrine"};
    ClientSocket owner{receiver.port};
};

TEST_F(BadInput, TakesNothingFromTheOwner) {
    Figures figures;
    {
        const Flooder flooder(receiver.port, Flooder::Pace::answered, 1);
        host.flood(randomMIDI());
        std::this_thread::sleep_for(milliseconds(500)); // tables and buffers grow to their size
        figures.memoryBefore = memory();
        figures.movesSent = work(floodTime(4));
        figures.memoryAfter = memory();
        figures.datagrams = flooder.sent();
        figures.bytesOfMIDI = host.flooded();
        EXPECT_EQ(flooder.unanswered(), 0U);
    }
    std::vector<int> expected(static_cast<std::size_t>(figures.movesSent));
    std::iota(expected.begin(), expected.end(), 1);
    waitUntil([&] { return arrived().size() >= expected.size(); }, seconds(5));
    const std::vector<int> values = arrived();
    figures.movesArrived = values.size();
    figures.print();
    EXPECT_EQ(values, expected);
    EXPECT_LT(figures.memoryAfter - figures.memoryBefore, memoryGrowth);
    expectItWorksAsBefore();
}

TEST_F(BadInput, IsSurvivedWhenThereIsMoreThanTheReceiverCanRead) {
    Figures figures;
    figures.memoryBefore = memory();
    {
        const Flooder one(receiver.port, Flooder::Pace::unlimited, 2);
        const Flooder other(receiver.port, Flooder::Pace::unlimited, 3);
        figures.movesSent = work(floodTime(1));
        figures.memoryAfter = memory();
        figures.datagrams = one.sent() + other.sent();
    }
    const std::vector<int> values = arrived();
    figures.movesArrived = values.size();
    figures.print();
    // The system drops what finds the socket's buffer full, the owner's moves with the rest.
    EXPECT_TRUE(std::ranges::is_sorted(values));
    EXPECT_LT(figures.memoryAfter - figures.memoryBefore, memoryGrowth);
    expectItWorksAsBefore();
}

} // namespace
} // namespace lumbrine::end_to_end
