// Virtual ports on a real JACK server: names, bytes, order, amounts.
#include "tests/interop/jack_rig.h"

#include <algorithm>
#include <set>
#include <thread>

namespace lumbrine::interop {
namespace {

using testing::IsSupersetOf;
using testing::UnorderedElementsAre;

class PortsRig : public JackRig {
protected:
    using JackRig::JackRig;

    void createAndConnect(Surface& surface) {
        ASSERT_EQ(createPorts(surface), 0);
        connectHost(surface);
        ASSERT_TRUE(waitUntil([&] { return surface.host->connected(); }));
    }
};

// What holds on any server.
class JackPorts : public testing::TestWithParam<JackMode>, public PortsRig {
protected:
    JackPorts() : PortsRig(GetParam()) {}
};
INSTANTIATE_TEST_SUITE_P(Servers, JackPorts, testing::Values(JackMode::synchronous, JackMode::asynchronous),
                         nameOfMode<testing::TestParamInfo<JackMode>>);

// What a server promises that waits for its clients.
class JackPortsInStep : public testing::Test, public PortsRig {};

const std::vector<Bytes>& awkwardEvents() {
    static const std::vector<Bytes> events{
        {0xFF},                                                                         // system reset
        {0x90, 0x00, 0x00},                                                             // a ping
        {0x90, 0x00, 0x7F},                                                             // its reply
        {0xB0, 0x0F, 0x00, 0x2F, 0x40},                                                 // running status
        {0x12, 0x34},                                                                   // data without a status
        {0xF7},                                                                         // the end of nothing
        {0xF0, 0x00, 0x00, 0x66},                                                       // SysEx without an end
        {0x90},                                                                         // a message cut short
        {0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, 0x03, 0x4B, 0x69, 0x63, 0x6B, 0xF7}, // a name
    };
    return events;
}

Bytes numbered(std::uint32_t i) {
    return {static_cast<std::uint8_t>(0xB0 | (i >> 14)), static_cast<std::uint8_t>(i & 0x7F),
            static_cast<std::uint8_t>((i >> 7) & 0x7F)};
}

// At least ten times slower than what JACK can carry in a cycle, also where the machine gives a thread its turn late.
template <typename Send>
void sendPaced(std::uint32_t count, Send send) {
    constexpr std::uint32_t burst = 100;
    for (std::uint32_t i = 0; i < count; ++i) {
        send(numbered(i));
        if (i % burst == burst - 1) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

std::uint32_t wrongOnes(const std::vector<Bytes>& events) {
    std::uint32_t wrong = 0;
    for (std::uint32_t i = 0; i < events.size(); ++i)
        if (events[i] != numbered(i)) ++wrong;
    return wrong;
}

TEST_P(JackPorts, HaveTheNamesOfTheSurfaces) {
    ASSERT_EQ(createPorts(a), 0);
    ASSERT_EQ(createPorts(b), 0);
    EXPECT_THAT(jack.ports(), IsSupersetOf({"Lumbrine:Lumbrine", "Lumbrine:Lumbrine B", "Lumbrine-01:Lumbrine",
                                            "Lumbrine-01:Lumbrine B"}));
    EXPECT_THAT(jack.shortNames("output", "midi"), UnorderedElementsAre("Lumbrine", "Lumbrine B"));
    EXPECT_THAT(jack.shortNames("input", "midi"), UnorderedElementsAre("Lumbrine", "Lumbrine B"));
}

TEST_P(JackPorts, KnowWhetherAnybodyIsConnected) {
    ASSERT_EQ(createPorts(a), 0);
    const auto isConnected = [this](bool wanted) {
        return waitUntil(
            [&] { return services.isConnected(a.source) == wanted && services.isConnected(a.destination) == wanted; });
    };
    EXPECT_TRUE(isConnected(false));
    connectHost(a);
    EXPECT_TRUE(isConnected(true));
    a.host.reset();
    EXPECT_TRUE(isConnected(false));
    EXPECT_EQ(services.isConnected(0), std::nullopt);
    EXPECT_EQ(services.isConnected(a.source + 1), std::nullopt);
    EXPECT_EQ(services.isConnected(a.destination + 1), std::nullopt);
}

TEST_P(JackPorts, RefuseASecondPortOfTheSameName) {
    ASSERT_EQ(createPorts(a), 0);
    MIDIEndpointRef second = 0;
    EXPECT_NE(services.createSource(a.client, a.name, second), 0);
    EXPECT_NE(services.createDestination(a.client, a.name, [](ByteView) {}, second), 0);
    EXPECT_EQ(second, 0U);
}

TEST_P(JackPorts, AreOnlyMadeForAClient) {
    MIDIEndpointRef endpoint = 0;
    EXPECT_NE(services.createSource(1, "Lumbrine", endpoint), 0);
    EXPECT_NE(services.createDestination(1, "Lumbrine", [](ByteView) {}, endpoint), 0);
    EXPECT_NE(services.received(1, Bytes{0xFE}), 0);
}

TEST_P(JackPorts, CannotBeMadeWithoutAServer) {
    jack.stop();
    EXPECT_NE(createPorts(a), 0);
    EXPECT_EQ(a.client, 0U);
}

// Events may be lost, doubled or late there, but not changed.
TEST_P(JackPorts, CarryNothingThatWasNotSent) {
    createAndConnect(a);
    const std::set<Bytes> sent(awkwardEvents().begin(), awkwardEvents().end());
    EXPECT_TRUE(waitUntil([&] {
        for (const Bytes& event : sent) {
            send(a, event);
            a.host->send(event);
        }
        return a.atHost.kinds().size() >= sent.size() && a.atReceiver.kinds().size() >= sent.size();
    }));
    EXPECT_EQ(a.atHost.kinds(), sent);
    EXPECT_EQ(a.atReceiver.kinds(), sent);
}

TEST_F(JackPortsInStep, CarryBytesUnalteredToTheHost) {
    createAndConnect(a);
    for (const Bytes& event : awkwardEvents())
        EXPECT_EQ(send(a, event), 0);
    EXPECT_EQ(a.atHost.waitFor(awkwardEvents().size()), awkwardEvents());
}

TEST_F(JackPortsInStep, CarryBytesUnalteredFromTheHost) {
    createAndConnect(a);
    for (const Bytes& event : awkwardEvents())
        a.host->send(event);
    EXPECT_EQ(a.atReceiver.waitFor(awkwardEvents().size()), awkwardEvents());
}

TEST_F(JackPortsInStep, CarryALongSysExWholeBothWays) {
    createAndConnect(a);
    Bytes longOne(3000, 0x55);
    longOne.front() = 0xF0;
    longOne.back() = 0xF7;
    a.host->send(longOne);
    EXPECT_EQ(a.atReceiver.waitFor(1), std::vector<Bytes>{longOne});
    send(a, longOne);
    EXPECT_EQ(a.atHost.waitFor(1), std::vector<Bytes>{longOne});
}

TEST_F(JackPortsInStep, DropAnEventThatNoCycleHasRoomForAndGoOn) {
    createAndConnect(a);
    a.host->send(Bytes(100'000, 0x55));
    a.host->send(Bytes{0x90, 0x00, 0x00});
    EXPECT_EQ(a.atReceiver.waitFor(1), (std::vector<Bytes>{{0x90, 0x00, 0x00}}));
}

TEST_F(JackPortsInStep, KeepTwoSurfacesApart) {
    createAndConnect(a);
    createAndConnect(b);
    send(a, Bytes{0x90, 0x00, 0x7F});
    send(b, Bytes{0xB0, 0x0F, 0x00});
    a.host->send(Bytes{0x90, 0x00, 0x00});
    b.host->send(Bytes{0xB0, 0x0C, 0x01});
    EXPECT_EQ(a.atHost.waitFor(1), (std::vector<Bytes>{{0x90, 0x00, 0x7F}}));
    EXPECT_EQ(b.atHost.waitFor(1), (std::vector<Bytes>{{0xB0, 0x0F, 0x00}}));
    EXPECT_EQ(a.atReceiver.waitFor(1), (std::vector<Bytes>{{0x90, 0x00, 0x00}}));
    EXPECT_EQ(b.atReceiver.waitFor(1), (std::vector<Bytes>{{0xB0, 0x0C, 0x01}}));
}

TEST_F(JackPortsInStep, LoseDoubleAndReorderNothingInEitherDirection) {
    constexpr std::uint32_t count = 30'000;
    createAndConnect(a);
    std::thread receiver([this] { sendPaced(count, [this](const Bytes& message) { send(a, message); }); });
    sendPaced(count, [this](const Bytes& message) { a.host->send(message); });
    receiver.join();
    const std::vector<Bytes> atHost = a.atHost.waitFor(count);
    const std::vector<Bytes> atReceiver = a.atReceiver.waitFor(count);
    EXPECT_EQ(atHost.size(), count);
    EXPECT_EQ(atReceiver.size(), count);
    EXPECT_EQ(wrongOnes(atHost), 0U);
    EXPECT_EQ(wrongOnes(atReceiver), 0U);
    EXPECT_EQ(services.dropped(), 0U);
}

TEST_F(JackPortsInStep, SpreadABurstOverCyclesInsteadOfLosingIt) {
    constexpr std::uint32_t count = 20'000; // several times what one cycle carries
    createAndConnect(a);
    for (std::uint32_t i = 0; i < count; ++i)
        send(a, numbered(i));
    const std::vector<Bytes> events = a.atHost.waitFor(count);
    EXPECT_EQ(events.size(), count);
    EXPECT_EQ(wrongOnes(events), 0U);
}

TEST_F(JackPortsInStep, KeepEachThreadsMessagesInItsOrder) {
    constexpr std::uint32_t each = 2'000;
    createAndConnect(a);
    const auto play = [this](std::uint8_t status) {
        for (std::uint32_t i = 0; i < each; ++i)
            send(a, Bytes{status, static_cast<std::uint8_t>(i & 0x7F), static_cast<std::uint8_t>(i >> 7)});
    };
    std::thread second([&play] { play(0x91); });
    play(0x90);
    second.join();
    std::uint32_t next[2] = {0, 0};
    const std::vector<Bytes> events = a.atHost.waitFor(2 * each);
    ASSERT_EQ(events.size(), 2 * each);
    for (const Bytes& event : events) {
        const std::uint32_t number = event[1] | static_cast<std::uint32_t>(event[2] << 7);
        EXPECT_EQ(number, next[event[0] & 1]++);
    }
}

} // namespace
} // namespace lumbrine::interop
