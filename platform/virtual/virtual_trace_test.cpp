// The same seed always gives the same history.
#include "platform/virtual/virtual_network.h"
#include "platform/virtual/virtual_runtime.h"

#include <set>

namespace lumbrine {
namespace {

using namespace std::chrono_literals;

// A little of everything: timers, background jobs, a serial queue, locks, hops and a bad network.
class BusyProgram {
public:
    using Turns = VirtualRuntime::Options::Turns;
    using History = std::vector<std::pair<TimePoint, Bytes>>;

    explicit BusyProgram(std::uint64_t seed, std::uint64_t patience = 1, Turns turns = Turns::drawn)
        : runtime({.seed = seed, .patience = patience, .turns = turns}) {
        network.setFaults({.loss = 0.1, .duplication = 0.1, .latency = 2ms, .jitter = 5ms});
        serverSocket = server.open();
        server.bind(serverSocket, 5000);
        phoneSocket = phone.open();
        phone.resolve("10.0.0.1", 5000, serverAddress);
    }

    std::uint64_t run() {
        const auto receiver = runtime.startThread("receiver", [this] { receive(); });
        const auto tick = runtime.repeatOnMain(4ms, [this] {
            phone.send(phoneSocket, Bytes{1, 2, ++sent}, serverAddress);
            runtime.background(Priority::normal, [this] { work(); });
        });
        runtime.runFor(100ms);
        server.shutDown(serverSocket);
        return runtime.traceHash();
    }

    int locksPerDatagram = 1;
    History received;

private:
    void receive() {
        Bytes buffer(16);
        PeerAddress from;
        while (server.receive(serverSocket, buffer, from) >= 0) {
            received.emplace_back(runtime.now(), buffer);
            for (int i = 0; i < locksPerDatagram; ++i)
                const Lock lock(mutex);
            queue->post([this] { runtime.sleepFor(1ms); });
            runtime.postMain([] {});
        }
    }

    void work() {
        runtime.sleepFor(Duration(runtime.random() % 3'000'000));
        {
            const Lock lock(mutex);
        }
        runtime.syncMain([] {});
    }

    VirtualRuntime runtime;
    VirtualNetwork network{runtime};
    DatagramSockets& server = network.host("10.0.0.1");
    DatagramSockets& phone = network.host("10.0.0.2");
    Mutex mutex{runtime};
    std::uint8_t sent = 0;
    int serverSocket = -1;
    int phoneSocket = -1;
    PeerAddress serverAddress;
    std::unique_ptr<SerialQueue> queue = runtime.serialQueue("queue", Priority::utility);
};

TEST(VirtualTrace, IsTheSameEachTimeForTheSameSeed) {
    const std::uint64_t expected = BusyProgram(7).run();
    for (int i = 0; i < 200; ++i)
        ASSERT_EQ(BusyProgram(7).run(), expected) << "run " << i;
}

TEST(VirtualTrace, IsAnotherForAnotherSeed) {
    std::set<std::uint64_t> hashes;
    for (std::uint64_t seed = 0; seed < 100; ++seed)
        hashes.insert(BusyProgram(seed).run());
    EXPECT_EQ(hashes.size(), 100u);
}

TEST(VirtualTrace, OfPatientThreadsIsTheSameEachTimeToo) {
    const std::uint64_t expected = BusyProgram(7, 8).run();
    EXPECT_NE(expected, BusyProgram(7).run());
    for (int i = 0; i < 50; ++i)
        ASSERT_EQ(BusyProgram(7, 8).run(), expected) << "run " << i;
}

TEST(VirtualTrace, InOrderDoesNotHangOnHowOftenTheProgramLocks) {
    using enum VirtualRuntime::Options::Turns;
    const auto history = [](VirtualRuntime::Options::Turns turns, int locks) {
        BusyProgram program(7, 1, turns);
        program.locksPerDatagram = locks;
        program.run();
        return program.received;
    };
    EXPECT_EQ(history(inOrder, 5), history(inOrder, 1));
    EXPECT_EQ(history(inOrder, 1), history(inOrder, 1));
    EXPECT_NE(BusyProgram(8, 1, inOrder).run(), BusyProgram(7, 1, inOrder).run());
}

} // namespace
} // namespace lumbrine
