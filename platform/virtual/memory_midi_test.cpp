#include "platform/virtual/memory_midi.h"
#include "platform/virtual/virtual_runtime.h"

namespace lumbrine {
namespace {

using namespace std::chrono_literals;

class MemoryMIDITest : public testing::Test {
protected:
    void makePorts(const std::string& name) {
        MIDIClientRef client = 0;
        MIDIEndpointRef destination = 0;
        ASSERT_EQ(midi.createClient(name, client), 0);
        ASSERT_EQ(midi.createSource(client, name, source), 0);
        const auto read = [this](ByteView packet) {
            EXPECT_FALSE(runtime.onMain());
            atDestination.emplace_back(packet.begin(), packet.end());
        };
        ASSERT_EQ(midi.createDestination(client, name, read, destination), 0);
    }

    std::unique_ptr<MIDIConnection> connect(const std::string& name) {
        return midi.connect(name, [this](ByteView data) { atConnection.emplace_back(data.begin(), data.end()); });
    }

    void sendFromSource(const Bytes& message) { ASSERT_EQ(midi.received(source, message), 0); }

    std::vector<Bytes> atDestination;
    std::vector<Bytes> atConnection;
    MIDIEndpointRef source = 0;
    VirtualRuntime runtime;
    MemoryMIDI midi{runtime};
};

TEST_F(MemoryMIDITest, CarriesBytesBothWaysInOrder) {
    makePorts("Lumbrine");
    const auto connection = connect("Lumbrine");
    for (std::uint8_t i = 0; i < 50; ++i) {
        sendFromSource({0xB0, 0x00, i});
        connection->send(Bytes{0x90, 0x00, i});
    }
    runtime.runUntilIdle();
    ASSERT_EQ(atConnection.size(), 50u);
    ASSERT_EQ(atDestination.size(), 50u);
    for (std::uint8_t i = 0; i < 50; ++i) {
        EXPECT_EQ(atConnection[i], (Bytes{0xB0, 0x00, i}));
        EXPECT_EQ(atDestination[i], (Bytes{0x90, 0x00, i}));
    }
}

TEST_F(MemoryMIDITest, DeliversAfterItsLatency) {
    MemoryMIDI slow(runtime, 3ms);
    MIDIClientRef client = 0;
    MIDIEndpointRef slowSource = 0;
    MIDIEndpointRef destination = 0;
    slow.createClient("Slow", client);
    slow.createSource(client, "Slow", slowSource);
    slow.createDestination(client, "Slow", [&](ByteView) { atDestination.emplace_back(); }, destination);
    const auto connection = slow.connect("Slow", [&](ByteView) { atConnection.emplace_back(); });
    slow.received(slowSource, Bytes{0xFF});
    connection->send(Bytes{0xFF});
    runtime.runFor(3ms - 1ns);
    EXPECT_EQ(atConnection.size() + atDestination.size(), 0u);
    runtime.runFor(1ns);
    EXPECT_EQ(atConnection.size(), 1u);
    EXPECT_EQ(atDestination.size(), 1u);
}

TEST_F(MemoryMIDITest, IsConnectedOnceBothPortsOfTheNameAreThere) {
    const auto connection = connect("Lumbrine");
    EXPECT_FALSE(connection->connected());
    connection->send(Bytes{0xFF});
    makePorts("Lumbrine B");
    EXPECT_FALSE(connection->connected());
    makePorts("Lumbrine");
    EXPECT_TRUE(connection->connected());
    runtime.runUntilIdle();
    EXPECT_TRUE(atDestination.empty());
}

TEST_F(MemoryMIDITest, KeepsPairsApart) {
    makePorts("Lumbrine");
    const auto other = connect("Lumbrine B");
    sendFromSource({0xFF});
    runtime.runUntilIdle();
    EXPECT_TRUE(atConnection.empty());
}

TEST_F(MemoryMIDITest, CallsNobodyAfterTheConnectionIsDestroyed) {
    makePorts("Lumbrine");
    bool inside = false;
    auto connection = midi.connect("Lumbrine", [&](ByteView) {
        inside = true;
        runtime.sleepFor(1ms);
        inside = false;
    });
    sendFromSource({0xFF});
    sendFromSource({0xFF});
    runtime.runUntil([&] { return inside; }, 1s);
    connection.reset();
    EXPECT_FALSE(inside);
    runtime.runFor(1s);
    EXPECT_LT(runtime.now(), TimePoint{1s + 2ms});
    EXPECT_FALSE(inside);
}

TEST_F(MemoryMIDITest, MayBeCalledWithAMutexHeld) {
    makePorts("Lumbrine");
    const auto connection = connect("Lumbrine");
    Mutex mutex(runtime, Nesting::overBackEnd);
    for (int i = 0; i < 4; ++i) {
        runtime.background(Priority::normal, [&] {
            const Lock lock(mutex);
            sendFromSource({0xB0, 0x00, 0x00});
            sendFromSource({0xB0, 0x20, 0x00});
        });
    }
    runtime.runUntilIdle();
    ASSERT_EQ(atConnection.size(), 8u);
    for (std::size_t i = 0; i < 8; ++i)
        EXPECT_EQ(atConnection[i][1], i % 2 == 0 ? 0x00 : 0x20);
}

TEST_F(MemoryMIDITest, FailsTheChosenCallsUntilHealed) {
    MIDIClientRef client = 0;
    MIDIEndpointRef endpoint = 0;
    midi.fail(MemoryMIDI::Call::createClient, -10833);
    EXPECT_EQ(midi.createClient("x", client), -10833);
    EXPECT_EQ(midi.createClient("x", client), -10833);
    EXPECT_EQ(client, 0u);
    midi.fail(MemoryMIDI::Call::createClient, 0);
    EXPECT_EQ(midi.createClient("x", client), 0);
    midi.fail(MemoryMIDI::Call::createSource, 1);
    midi.fail(MemoryMIDI::Call::createDestination, 2);
    midi.fail(MemoryMIDI::Call::setUniqueID, 3);
    EXPECT_EQ(midi.createSource(client, "x", endpoint), 1);
    EXPECT_EQ(midi.createDestination(client, "x", {}, endpoint), 2);
    EXPECT_EQ(endpoint, 0u);
    EXPECT_EQ(midi.setUniqueID(endpoint, 7), 3);
}

TEST_F(MemoryMIDITest, RefusesWhatItDoesNotKnow) {
    MIDIEndpointRef endpoint = 0;
    EXPECT_NE(midi.createSource(5, "x", endpoint), 0);
    EXPECT_NE(midi.received(99, Bytes{0xFF}), 0);
    EXPECT_NE(midi.setUniqueID(99, 1), 0);
}

} // namespace
} // namespace lumbrine
