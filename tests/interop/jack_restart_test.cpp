// Virtual ports on a JACK server that dies and comes back.
#include "tests/interop/jack_rig.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <ctime>
#include <thread>

namespace lumbrine::interop {
namespace {

using Clock = std::chrono::steady_clock;
using testing::IsSubsetOf;

constexpr std::chrono::milliseconds generous{500}; // far more than a call takes, even when the thread loses its turn

class JackRestart : public testing::TestWithParam<JackMode>, public JackRig {
protected:
    JackRestart() : JackRig(GetParam()) {}

    void SetUp() override {
        ASSERT_EQ(createPorts(a), 0);
        ASSERT_EQ(createPorts(b), 0);
        connectHost(a);
        connectHost(b);
        ASSERT_TRUE(waitUntil([this] { return bothConnected(); }));
    }

    bool bothConnected() const { return a.host->connected() && b.host->connected(); }
    bool noneConnected() const { return !a.host->connected() && !b.host->connected(); }

    void killServer() {
        jack.kill();
        ASSERT_TRUE(waitUntil([this] { return noneConnected(); }));
    }
};

INSTANTIATE_TEST_SUITE_P(Servers, JackRestart, testing::Values(JackMode::synchronous, JackMode::asynchronous),
                         nameOfMode<testing::TestParamInfo<JackMode>>);

// Sends from a thread of its own and notes how long the longest call took.
class RestlessSender {
public:
    explicit RestlessSender(std::function<void()> send) : send(std::move(send)), thread([this] { run(); }) {}
    ~RestlessSender() {
        stopping = true;
        thread.join();
    }

    std::uint64_t sent() const { return count; }
    Clock::duration longestCall() const { return Clock::duration(longest); }

private:
    void run() {
        while (!stopping) {
            for (int i = 0; i < 100; ++i) {
                const auto before = Clock::now();
                send();
                longest = std::max(longest.load(), (Clock::now() - before).count());
                ++count;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

    const std::function<void()> send;
    std::atomic<bool> stopping{false};
    std::atomic<std::uint64_t> count{0};
    std::atomic<Clock::rep> longest{0};
    std::thread thread;
};

std::chrono::nanoseconds processorTime() {
    timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

TEST_P(JackRestart, NeverBlocksASenderWhileTheServerDies) {
    const RestlessSender toHost([this] { send(a, Bytes{0x90, 0x00, 0x7F}); });
    const RestlessSender toReceiver([this] { b.host->send(Bytes{0x90, 0x00, 0x00}); });
    ASSERT_TRUE(waitUntil([&] { return a.atHost.size() > 1000 && b.atReceiver.size() > 1000; }));
    killServer();
    const std::uint64_t atDeath = toHost.sent();
    // More than every ring holds.
    ASSERT_TRUE(waitUntil([&] { return toHost.sent() > atDeath + 50'000 && toReceiver.sent() > atDeath + 50'000; }));
    EXPECT_LT(toHost.longestCall(), generous);
    EXPECT_LT(toReceiver.longestCall(), generous);
}

TEST_P(JackRestart, UsesNoProcessorWhileTheServerIsAway) {
    killServer();
    const auto before = processorTime();
    const auto start = Clock::now();
    // Long enough for an attempt to reach the server.
    std::this_thread::sleep_for(std::chrono::milliseconds(1200));
    EXPECT_LT(processorTime() - before, (Clock::now() - start) / 20);
}

TEST_P(JackRestart, BringsThePortsBackUnderTheirNamesAndConnectsThem) {
    killServer();
    jack.start();
    ASSERT_TRUE(waitUntil([this] { return bothConnected(); }));
    const auto outputs = jack.shortNames("output", "midi");
    EXPECT_EQ(std::ranges::count(outputs, "Lumbrine"), 1);
    EXPECT_EQ(std::ranges::count(outputs, "Lumbrine B"), 1);
    EXPECT_TRUE(jack.hasPort("Lumbrine:Lumbrine B"));

    EXPECT_TRUE(carriesBothWays(a, Bytes{0x90, 0x00, 0x7F}, Bytes{0x90, 0x00, 0x00}));
    EXPECT_TRUE(carriesBothWays(b, Bytes{0xB0, 0x0F, 0x00}, Bytes{0xB0, 0x0C, 0x01}));
}

TEST_P(JackRestart, ReportsTheReturnOfThePortsBeforeTheFirstEvent) {
    EXPECT_EQ(a.returns, 0);
    killServer();
    jack.start();
    ASSERT_TRUE(waitUntil([this] { return bothConnected(); }));
    a.atReceiver.clear();
    EXPECT_TRUE(carriesBothWays(a, Bytes{0x90, 0x00, 0x7F}, Bytes{0x90, 0x00, 0x00}));
    EXPECT_EQ(a.returns, 1);
}

TEST_P(JackRestart, DeliversNothingLateThatWasSentWhileTheServerHungOrWasAway) {
    const Bytes whileItHung{0xFF};
    const Bytes lastWhileItHung{0xFE};
    const Bytes whileItWasAway{0xFD};
    const Bytes toHost{0x90, 0x00, 0x7F};
    const Bytes toReceiver{0x90, 0x00, 0x00};
    const auto sendBothWays = [this](const Bytes& message) {
        send(a, message);
        a.host->send(message);
    };
    jack.freeze();
    // The clients finish the cycle that is under way, and what they take along is delivered, however late. So this is
    // more than some cycles carry, and less than a port holds.
    for (int i = 0; i < 20'000; ++i)
        sendBothWays(whileItHung);
    sendBothWays(lastWhileItHung);
    ASSERT_EQ(services.dropped(), 0U);
    killServer();
    for (int i = 0; i < 100; ++i)
        sendBothWays(whileItWasAway);
    jack.start();
    ASSERT_TRUE(waitUntil([this] { return bothConnected(); }));
    ASSERT_TRUE(waitUntil([&] {
        send(a, toHost);
        a.host->send(toReceiver);
        return a.atHost.kinds().contains(toHost) && a.atReceiver.kinds().contains(toReceiver);
    }));
    EXPECT_THAT(a.atHost.kinds(), IsSubsetOf({whileItHung, toHost}));
    EXPECT_THAT(a.atReceiver.kinds(), IsSubsetOf({whileItHung, toReceiver}));
}

TEST_P(JackRestart, DropsAndCountsWhatFindsNoRoomWhileTheServerHangs) {
    if (GetParam() == JackMode::asynchronous) GTEST_SKIP() << "such a server may lose what has found room";
    constexpr std::uint32_t count = 100'000; // more than a port holds
    jack.freeze();
    std::uint64_t refused = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        const Bytes message{static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(i >> 8),
                            static_cast<std::uint8_t>(i >> 16)};
        if (send(a, message) != 0) ++refused;
    }
    const std::uint64_t dropped = services.dropped();
    EXPECT_GT(dropped, 0U);
    EXPECT_EQ(refused, dropped);
    jack.thaw();
    const std::vector<Bytes> kept = a.atHost.waitFor(count - dropped);
    ASSERT_EQ(kept.size(), count - dropped);
    EXPECT_EQ(kept[1000], (Bytes{0xE8, 0x03, 0x00}));
    send(a, Bytes{0x90, 0x00, 0x7F});
    EXPECT_EQ(a.atHost.waitFor(kept.size() + 1).back(), (Bytes{0x90, 0x00, 0x7F}));
}

TEST_P(JackRestart, SurvivesACrashAndACleanEndOneAfterTheOther) {
    const std::vector<std::function<void()>> ends{[this] { jack.kill(); }, [this] { jack.stop(); }};
    for (const auto& end : ends) {
        end();
        ASSERT_TRUE(waitUntil([this] { return noneConnected(); }));
        jack.start();
        ASSERT_TRUE(waitUntil([this] { return bothConnected(); }));
        a.atHost.clear();
        a.atReceiver.clear();
        EXPECT_TRUE(carriesBothWays(a, Bytes{0x90, 0x00, 0x7F}, Bytes{0x90, 0x00, 0x00}));
    }
}

TEST_P(JackRestart, TakesItselfApartWhileTheServerIsAway) {
    killServer();
}

} // namespace
} // namespace lumbrine::interop
